// Says in one line that a call must fail, with which code and which words.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "OrvantaException.h"

namespace OrvantaNS::testing {

/// Passes when `call` throws an `OrvantaException` of exactly this code and text.
template <typename Call> void expectError(Call&& call, OVERR_CODES code, const std::string& text) {
    try {
        call();
        ADD_FAILURE() << "nothing was thrown instead of \"" << text << "\"";
    } catch (const OrvantaException& error) {
        EXPECT_EQ(error.errorCode(), code);
        EXPECT_EQ(error.what(), text);
    }
}

} // namespace OrvantaNS::testing
