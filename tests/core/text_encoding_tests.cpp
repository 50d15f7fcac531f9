#include "platform/text_encoding.h"

#include <gtest/gtest.h>

TEST(TextEncoding, Windows1252BothWays) {
    const std::tuple<const char*, const char*> cases[] = {
        {"", ""},
        {"\xE9\xFF\xA0", "\xC3\xA9\xC3\xBF\xC2\xA0"},
        {"\x80\x85\x99\x9F", "\xE2\x82\xAC\xE2\x80\xA6\xE2\x84\xA2\xC5\xB8"},
        {"\x81\x8D\x8F\x90\x9D", "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"},
    };
    for (const auto& [narrow, utf8] : cases) {
        EXPECT_EQ(Utf8FromWindows1252(narrow), utf8);
        EXPECT_EQ(Windows1252FromUtf8(utf8), narrow);
    }
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(Windows1252FromUtf8(Utf8FromWindows1252(all)), all);
}

TEST(TextEncoding, WhatHasNoPlaceBecomesAQuestionMark) {
    const std::tuple<const char*, const char*> cases[] = {
        {"a\xD0\x96z", "a?z"},         // a letter of another alphabet
        {"\xF0\x9F\x98\x80!", "?!"},   // beyond 16 bits
        {"\xE9t\xE9", "?t?"},          // Windows-1252 where UTF-8 should be
        {"\xC2", "?"},                 // cut
        {"\xE2\x82", "??"},            // cut
        {"\xC0\x80\xC1\xBF", "????"},  // overlong
        {"\xE0\x81\x81\xF0\x80\x81\x81", "???????"},
        {"\xF8\x88\x80\x80\x80", "?????"},  // longer than any character
        {"\x80z", "?z"},                    // no lead byte
        {"\xC2\x80", "?"},                  // the control character, whose byte stands for another character
    };
    for (const auto& [utf8, narrow] : cases) EXPECT_EQ(Windows1252FromUtf8(utf8), narrow) << utf8;
}

TEST(TextEncoding, TellsUtf8FromOtherBytes) {
    const std::tuple<const char*, bool> cases[] = {
        {"", true},
        {"plain\r\n\x7F", true},
        {"\xC2\x80\xDF\xBF", true},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", true},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true},
        {"\xE9t\xE9", false},  // Windows-1252
        {"\xC3\xA9 \xE9", false},
        {"\x80", false},
        {"\xE6\xBC", false},  // cut
        {"\xE6\xBC ", false},
        {"\xE6 \xBC\xA2", false},
        {"\xC0\x80", false},  // overlong
        {"\xC1\xBF", false},
        {"\xE0\x9F\xBF", false},
        {"\xF0\x8F\xBF\xBF", false},
        {"\xED\xA0\x80", false},      // half of a pair
        {"\xF4\x90\x80\x80", false},  // beyond the last character
        {"\xF5\x80\x80\x80", false},
        {"\xE0\xA0\x80\x80", false},
    };
    for (const auto& [text, isUtf8] : cases) {
        Utf8Check check;
        for (const char* c = text; *c; ++c) check.Add(static_cast<uint8_t>(*c));
        EXPECT_EQ(check.Holds(), isUtf8) << text;
    }
}
