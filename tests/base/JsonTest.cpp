#include "base/Json.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(Json, ReadsOnlyCanonicalUuids) {
    const struct {
        const char* text;
        bool valid;
    } rows[] = {
        {"E621E1F8-C36C-495A-93FC-0C247A3E6E5F", true},
        {"e621e1f8-c36c-495a-93fc-0c247a3e6e5f", true},
        {"00000000-0000-0000-0000-000000000000", true},
        {"{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}", false},
        {"{E621E1F8-C36C-495A-93FC-0C247A3E6E5", false},
        {"E621E1F8-C36C-495A-93FC-0C247A3E6E5F0", false},
        {"E621E1F8C36C495A93FC0C247A3E6E5F", false},
        {"E621E1F8-C36C+495A-93FC-0C247A3E6E5F", false},
        {"E621E1F8-C36C-495A-93FC-0C247A3E6E5G", false},
        {"", false},
    };
    for (const auto& row : rows) {
        const auto parsed = parseUuid(QString::fromLatin1(row.text));
        EXPECT_EQ(parsed.has_value(), row.valid) << row.text;
        if (parsed) {
            EXPECT_EQ(uuidText(*parsed), QString::fromLatin1(row.text).toUpper());
        }
    }
}

TEST(Json, ReadsOnlyFullIso8601Dates) {
    const QDateTime instant(QDate(2026, 3, 1), QTime(14, 5, 9, 999), Qt::UTC);
    EXPECT_EQ(iso8601Text(instant).toStdString(), "2026-03-01T14:05:09Z");

    const QDateTime whole(QDate(2026, 3, 1), QTime(14, 5, 9), Qt::UTC);
    for (const char* text :
         {"2026-03-01T14:05:09Z", "2026-03-01T16:05:09+02:00", "2026-03-01T16:05:09+0200"})
        EXPECT_EQ(parseIso8601(QString::fromLatin1(text)), whole) << text;
    for (const char* text :
         {"2026-03-01T14:05:09", "2026-03-01 14:05:09Z", "2026-03-01", "2026-03-01T14:05:09.5Z",
          "2026-02-30T14:05:09Z", "", "Z", "2026-03-01T14:05:09Z\n"})
        EXPECT_EQ(parseIso8601(QString::fromLatin1(text)), std::nullopt) << text;
}

TEST(Json, CountsReferenceDatesFromTheYear2001) {
    const QDateTime start(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_EQ(secondsSinceReferenceDate(start), 0.0);
    EXPECT_EQ(secondsSinceReferenceDate(start.addMSecs(1'500)), 1.5);
    EXPECT_EQ(secondsSinceReferenceDate(start.addSecs(-1)), -1.0);
    EXPECT_EQ(fromReferenceDate(1.25), start.addMSecs(1'250));
    EXPECT_EQ(fromReferenceDate(1e300), std::nullopt);
    EXPECT_EQ(fromReferenceDate(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

// Reads one member of each kind and gives the complaint, or "" when all is well.
std::string complaintAbout(const QByteArray& json) {
    struct Nothing {};
    const auto read = decodeRecords<Nothing>(json, [](JsonReader& reader) {
        EXPECT_EQ(reader.optionalText("optional").value_or(QString()), QString());
        std::ignore = reader.boolean("boolean");
        std::ignore = reader.integer32("integer");
        std::ignore = reader.number("number");
        std::ignore = reader.texts("texts");
        std::ignore = reader.object("object").text("text");
        return Nothing{};
    });
    return read ? "" : read.error().description.toStdString();
}

TEST(Json, TellsWhichMemberIsMissingOrWrong) {
    const QByteArray good =
        R"([{"boolean":true,"integer":3,"number":1.5,"texts":["a"],"object":{"text":"t"},"x":0}])";
    ASSERT_EQ(complaintAbout(good), "");

    const struct {
        const char* part;
        const char* replacement;
        const char* complaint;
    } rows[] = {
        {R"("x":0)", R"("optional":null)", ""},
        {R"("x":0)", R"("optional":7)", R"("[0].optional" is not a text)"},
        {R"("boolean":true)", R"("b":true)", R"("[0].boolean" is missing)"},
        {R"("boolean":true)", R"("boolean":1)", R"("[0].boolean" is not a Boolean)"},
        {R"("boolean":true)", R"("boolean":null)", R"("[0].boolean" is not a Boolean)"},
        {R"("integer":3)", R"("integer":3.0)", ""},
        {R"("integer":3)", R"("integer":3.5)", R"("[0].integer" is not a whole number)"},
        {R"("integer":3)", R"("integer":3000000000)", R"("[0].integer" is out of range)"},
        {R"("number":1.5)", R"("number":"1.5")", R"("[0].number" is not a number)"},
        {R"(["a"])", R"(["a",1])", R"("[0].texts" holds something other than texts)"},
        {R"({"text":"t"})", R"({})", R"("[0].object.text" is missing)"},
        {R"({"text":"t"})", R"("t")", R"("[0].object" is not an object)"},
    };
    for (const auto& row : rows) {
        QByteArray json = good;
        json.replace(row.part, row.replacement);
        ASSERT_NE(json, good);
        EXPECT_EQ(complaintAbout(json), row.complaint);
    }
}

TEST(Json, RefusesWhatIsNoArrayOfObjects) {
    for (const char* json : {"", "{", "{}", "[1]", "[{}", "null", "[{}] x", "[\"\xff\"]"})
        EXPECT_NE(complaintAbout(json), "") << json;
    EXPECT_EQ(complaintAbout("[]"), "");
}

} // namespace
} // namespace harbrix
