// SPDX-License-Identifier: GPL-3.0-or-later

#include "Testing.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"

namespace quib {
namespace {

std::string Printed(const char* format, double value) {
    char text[400];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

template <class Format, class Value>
std::string Formatted(Format format, Value value) {
    char text[kLongestNumber];
    return {text, format(text, value)};
}

float ReadBack(const std::string& text) {
    const std::string line = "KEY;" + text + ";\r\n";
    CRecordReader reader(line);
    EXPECT_TRUE(reader.NextLine());
    float listed = 0;
    EXPECT_TRUE(reader.FieldsFrom(1).Next(listed));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(listed), std::bit_cast<std::uint32_t>(reader.Real(1))) << text;
    return listed;
}

TEST(RecordNumbers, RealsAreWrittenAsPrintfWritesThem) {
    std::mt19937 random(1);
    using Limits = std::numeric_limits<float>;
    std::vector<float> values = {Limits::max(), Limits::denorm_min(), Limits::infinity(), 0.000030517578125F};
    for (const float value :
         {0.0F, -0.0F, 0.5F, 5e-5F, -5e-5F, 0.03125F, 0.09375F, 2.5e-5F, 8.6e9F, -1e15F, 99999.99995F})
        values.push_back(value);
    for (int i = 0; i < 100000; ++i) {
        values.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
        // Multiples of 1/32768 end in many exact ties of the last decimal.
        values.push_back(static_cast<float>(static_cast<std::int32_t>(random()) >> 8) / 32768.0F);
    }
    for (const float value : values) {
        ASSERT_EQ(Formatted(FormatReal4, value), Printed("%.4f", static_cast<double>(value)));
        ASSERT_EQ(Formatted(FormatReal6, value), Printed("%f", static_cast<double>(value)));
    }
    for (const std::int32_t value : {0, 7, -7, 1000000, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(Formatted(FormatInteger, value), std::to_string(value));
    }
}

TEST(RecordNumbers, RealsAreReadAsTheCLibraryReadsThem) {
    std::mt19937_64 random(2);
    std::vector<std::string> texts = {"340282346638528859811704183484516925440", "16777217.0000000001"};
    for (const char* const text :
         {"",    "  12.5", "+3",      "-0.0000", "1e3",  "12abc", "abc", "-.5", "5.",       "--1",
          "+-1", "1e-50",  "0.1e-44", "1.5;x",   " \t7", ".",     "-",   "1e",  "16777217", "8388609.5"})
        texts.emplace_back(text);
    for (int i = 0; i < 60000; ++i) {
        texts.push_back(
            Printed("%.4f", static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(random())))));
        texts.push_back(std::to_string(random() % 100000000) + "." + std::to_string(random() % 1000000));
        // Right between two floats, or next to it: where rounding twice would show.
        const double middle = (static_cast<double>((1U << 23) | (random() & 0x7fffff)) + 0.5) / 256.0;
        texts.push_back(Printed("%.9f", middle) + (random() % 2 == 0 ? "" : "1"));
    }
    for (const std::string& text : texts) {
        const float expected = std::strtof(text.substr(0, text.find(';')).c_str(), nullptr);
        if (!std::isfinite(expected)) continue;
        ASSERT_EQ(std::bit_cast<std::uint32_t>(ReadBack(text)), std::bit_cast<std::uint32_t>(expected)) << text;
    }
}

TEST(RecordNumbers, WhatIsNoFiniteNumberIsLimited) {
    constexpr float largest = std::numeric_limits<float>::max();
    EXPECT_EQ(ReadBack("nan"), 0.0F);
    EXPECT_EQ(ReadBack("inf"), 0.0F);
    EXPECT_EQ(ReadBack("1e39"), largest);
    EXPECT_EQ(ReadBack("-1e999"), -largest);
    EXPECT_EQ(ReadBack("1e-999"), 0.0F);
    EXPECT_EQ(ReadBack("-" + std::string(400, '9')), -largest);
    EXPECT_EQ(ParseInteger("99999999999999999999"), INT32_MAX);
    EXPECT_EQ(ParseInteger("-2147483649"), INT32_MIN);
    EXPECT_EQ(ParseInteger("12.9"), 12);
    EXPECT_EQ(ParseInteger("      1234"), 1234);
    EXPECT_EQ(ParseInteger("x1"), 0);
}

TEST(CRecordReader, OnlyWhatASemicolonEndsIsAField) {
    struct Case {
        std::string line;
        std::vector<std::string> fields;
    };
    const std::string longText(600, 'x');
    const std::string withNul("A;1;\0B;2;", 9);
    for (const Case& example : std::vector<Case>{{"LEVEL;0.5", {"LEVEL"}},
                                                 {"LEVEL;0.5;\r\n", {"LEVEL", "0.5"}},
                                                 {"A;;\r\n", {"A", ""}},
                                                 {"A;" + longText + ";B;\n", {"A", longText.substr(0, 512), "B"}},
                                                 {withNul, {"A", "1"}},
                                                 {"\r\n", {}},
                                                 {"no field", {}}}) {
        CRecordReader reader(example.line);
        ASSERT_TRUE(reader.NextLine());
        EXPECT_FALSE(reader.HasFields(example.fields.size() + 1)) << example.line;
        for (std::size_t i = 0; i < example.fields.size(); ++i) EXPECT_EQ(reader.Text(i), example.fields[i]);
        EXPECT_FALSE(reader.NextLine());
    }
}

TEST(CRecordReader, BytesAreTakenByTheirCountAndOnlyWhole) {
    const std::string image("a;\r\n\0PRESET;END;\r\n", 19);
    CRecordWriter writer;
    writer.SizedBytes("PRESET_SIZE", std::as_bytes(std::span(image.data(), image.size())));
    writer.IntegerLine("PRESET_INDEX", 3);
    const std::string bytes(writer.Bytes().data(), writer.Bytes().size());
    EXPECT_EQ(bytes, "PRESET_SIZE;        19;\r\n" + image + "\r\nPRESET_INDEX;3;\r\n");
    CRecordReader reader(bytes);
    ASSERT_TRUE(reader.NextLine());
    EXPECT_FALSE(reader.TakeBytes(18));  // no line end follows
    EXPECT_FALSE(reader.TakeBytes(1000));
    EXPECT_FALSE(reader.TakeBytes(-1));
    EXPECT_EQ(reader.TakeBytes(reader.Integer(1)), image);
    ASSERT_TRUE(reader.NextLine());  // the end of the image's line
    ASSERT_TRUE(reader.NextLine());
    EXPECT_EQ(reader.Key(), "PRESET_INDEX");
}

TEST(CRecordWriter, TextCannotBeginALineOfItsOwn) {
    CRecordWriter writer;
    writer.TextLine("TITLE", "Two\r\nPLUGIN;END");
    writer.MarkerLine("PRESET_ADD");
    EXPECT_EQ(std::string_view(writer.Bytes().data(), writer.Bytes().size()),
              "TITLE;Two  PLUGIN;END;\r\nPRESET_ADD;;\r\n");
}

}  // namespace
}  // namespace quib
