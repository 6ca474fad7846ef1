#include "writing/Json.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <simdjson.h>

namespace OrvantaNS::command {
namespace {

TEST(JsonTest, JsonText_ALineForEachField_AndForEachEntryOfAList) {
    const Json document = {
        {"z", 1}, {"a", {{"c", true}}}, {"list", {{{"d", nullptr}, {"b", "x"}}, 2}}, {"none", Json::array()}};
    EXPECT_EQ(jsonText(document), "{\n"
                                  "  \"z\": 1,\n"
                                  "  \"a\": {\"c\":true},\n"
                                  "  \"list\": [\n"
                                  "    {\"d\":null,\"b\":\"x\"},\n"
                                  "    2\n"
                                  "  ],\n"
                                  "  \"none\": []\n"
                                  "}\n");
}

TEST(JsonTest, JsonText_EmptyAndPlainDocuments) {
    EXPECT_EQ(jsonText(Json::object()), "{}\n");
    EXPECT_EQ(jsonText(Json("text")), "\"text\"\n");
    EXPECT_EQ(jsonText(Json::array({1, 2})), "[1,2]\n");
}

TEST(JsonTest, JsonText_Numbers_ComeBackAsTheyWere_AndWhatIsNoNumberIsNull) {
    for (const double number : {1.0 / 3.0, 1e300, 5e-324, -0.1, 2.0, 1e21, std::numeric_limits<double>::max()}) {
        const std::string text = jsonText({{"number", number}});
        simdjson::dom::parser parser;
        EXPECT_EQ(parser.parse(text)["number"].get_double().value(), number) << text;
    }
    EXPECT_EQ(jsonText({{"low", std::numeric_limits<long long>::lowest()},
                        {"nan", std::numeric_limits<double>::quiet_NaN()},
                        {"inf", -std::numeric_limits<double>::infinity()}}),
              "{\n  \"low\": -9223372036854775808,\n  \"nan\": null,\n  \"inf\": null\n}\n");
}

TEST(JsonTest, JsonText_Strings_ComeBackAsTheyWere) {
    const std::string text = "quote \" backslash \\ tab \t null " + std::string(1, '\0') + " bell \a del \x7f \xc3\xbc";
    const std::string json = jsonText({{"text", text}});
    simdjson::dom::parser parser;
    EXPECT_EQ(parser.parse(json)["text"].get_string().value(), text);
}

TEST(JsonTest, JsonText_TextThatIsNotUtf8_StillGivesJson) {
    const std::string json = jsonText({{"text", "a\xff"
                                                "b"}});
    simdjson::dom::parser parser;
    EXPECT_EQ(parser.parse(json)["text"].get_string().value(), "a\xef\xbf\xbd"
                                                               "b");
}

TEST(JsonTest, TextOrNull_EmptyTextIsNull) {
    EXPECT_TRUE(textOrNull("").is_null());
    EXPECT_EQ(textOrNull("x"), Json("x"));
}

TEST(JsonTest, EdgesOf_NamesTheEdgesInReadingOrder) {
    EXPECT_EQ(jsonText(edgesOf({1, 3, 2, 4})),
              "{\n  \"left\": 1,\n  \"top\": 2,\n  \"right\": 3,\n  \"bottom\": 4\n}\n");
}

} // namespace
} // namespace OrvantaNS::command
