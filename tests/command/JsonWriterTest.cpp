#include "json_writer.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <simdjson.h>

namespace OrvantaNS::command {
namespace {

TEST(JsonWriterTest, Document_IsIndentedAndRowsStandOnALine) {
    JsonWriter json;
    json.openObject();
    json.field("a", 1);
    json.key("b");
    json.openArray();
    json.openRow();
    json.field("c", true);
    json.key("d");
    json.openArray();
    json.value("x");
    json.null();
    json.closeArray();
    json.closeObject();
    json.closeArray();
    json.key("e");
    json.openArray();
    json.closeArray();
    json.closeObject();
    EXPECT_EQ(json.text(),
              "{\n  \"a\": 1,\n  \"b\": [\n    {\"c\": true, \"d\": [\"x\", null]}\n  ],\n  \"e\": []\n}\n");
}

TEST(JsonWriterTest, Numbers_KeepTheirValue_AndWhatIsNoNumberIsNull) {
    JsonWriter json;
    json.openRow();
    json.field("low", std::numeric_limits<long long>::lowest());
    json.field("third", 1.0 / 3.0);
    json.field("huge", 1e300);
    json.field("nan", std::numeric_limits<double>::quiet_NaN());
    json.field("inf", -std::numeric_limits<double>::infinity());
    json.closeObject();
    EXPECT_EQ(json.text(), "{\"low\": -9223372036854775808, \"third\": 0.3333333333333333, \"huge\": 1e+300, "
                           "\"nan\": null, \"inf\": null}\n");
}

TEST(JsonWriterTest, Strings_ComeBackAsTheyWere) {
    const std::string text = "quote \" backslash \\ tab \t null " + std::string(1, '\0') + " bell \a del \x7f \xc3\xbc";
    JsonWriter json;
    json.openRow();
    json.field("text", text);
    json.closeObject();
    simdjson::dom::parser parser;
    EXPECT_EQ(parser.parse(json.text())["text"].get_string().value(), text);
}

TEST(JsonWriterTest, TextThatIsNotUtf8_StillGivesJson) {
    JsonWriter json;
    json.openRow();
    json.field("text", "a\xff"
                       "b");
    json.closeObject();
    simdjson::dom::parser parser;
    EXPECT_EQ(parser.parse(json.text())["text"].get_string().value(), "a\xef\xbf\xbd"
                                                                      "b");
}

} // namespace
} // namespace OrvantaNS::command
