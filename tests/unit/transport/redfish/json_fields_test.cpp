#include "transport/redfish/json_fields.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace Vantix::transport::json {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

boost::json::object Parse(const std::string& text) {
    return boost::json::parse(text).as_object();
}

std::string TextFor(const std::string& value) {
    return Text(Parse(R"({"K":)" + value + "}"), "K");
}

TEST(JsonFieldsTest, MissingNullObjectAndArrayReadAsNoText) {
    EXPECT_EQ("", Text(Parse("{}"), "K"));
    for (const char* value : {"null", R"({"a":"b"})", R"(["a"])", "[]", "{}"}) {
        EXPECT_EQ("", TextFor(value)) << value;
    }
}

TEST(JsonFieldsTest, NumbersAndBooleansReadAsText) {
    const std::pair<const char*, const char*> cases[] = {
        {"7", "7"},       {"-7", "-7"},      {"18446744073709551615", "18446744073709551615"},
        {"1.25", "1.25"}, {"2.0", "2.0"},    {"-0.5", "-0.5"},
        {"true", "true"}, {"false", "false"}};
    for (const auto& [json, text] : cases) EXPECT_EQ(text, TextFor(json)) << json;
}

TEST(JsonFieldsTest, TextIsCutAtNulAndTrimmed) {
    EXPECT_EQ("1.02", TextFor(R"("  1.02 \n")"));
    EXPECT_EQ("1.02", TextFor(R"("1.02\u0000junk")"));
    EXPECT_EQ("", TextFor(R"(" \t\r\n ")"));
}

TEST(JsonFieldsTest, ControlBytesInsideTextBecomeBlanks) {
    EXPECT_EQ("a b c", TextFor(R"("a\u0001b\u007Fc")"));
}

TEST(JsonFieldsTest, BadUtf8BecomesReplacementCharacter) {
    const std::pair<std::string, std::string> cases[] = {
        {"a\xFFz", "a\xEF\xBF\xBDz"},
        {"a\xC3", "a\xEF\xBF\xBD"},
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"gr\xC3\xBC\xC3\x9F", "gr\xC3\xBC\xC3\x9F"},
        {"\xF0\x9F\x94\xA7", "\xF0\x9F\x94\xA7"}};
    for (const auto& [raw, clean] : cases) {
        EXPECT_EQ(clean, TextOf(boost::json::value(raw))) << testing::PrintToString(raw);
    }
}

TEST(JsonFieldsTest, TextAtWalksNestedObjects) {
    const auto object = Parse(R"({"Location":{"PartLocation":{"ServiceLabel":"Slot 3"}}})");
    EXPECT_EQ("Slot 3", TextAt(object, {"Location", "PartLocation", "ServiceLabel"}));
    EXPECT_EQ("", TextAt(object, {"Location", "Nothing", "ServiceLabel"}));
    EXPECT_EQ("", TextAt(object, {"Location"}));
    EXPECT_EQ("", TextAt(Parse(R"({"Location":"here"})"), {"Location", "PartLocation"}));
    EXPECT_EQ("", TextAt(object, {}));
}

TEST(JsonFieldsTest, BooleanIsReadFromBooleanNumberAndText) {
    const auto object = Parse(R"({"a":true,"b":false,"c":1,"d":0,"e":"True","f":"FALSE"})");
    for (const char* key : {"a", "c", "e"}) EXPECT_EQ(true, OptionalBool(object, key)) << key;
    for (const char* key : {"b", "d", "f"}) EXPECT_EQ(false, OptionalBool(object, key)) << key;
}

TEST(JsonFieldsTest, OtherValuesAreNoBoolean) {
    const auto object = Parse(R"({"a":null,"b":"maybe","c":2,"d":{},"e":[true]})");
    for (const char* key : {"a", "b", "c", "d", "e", "missing"}) {
        EXPECT_EQ(std::nullopt, OptionalBool(object, key)) << key;
    }
}

TEST(JsonFieldsTest, IntegerIsReadFromNumberTextAndWholeFraction) {
    const auto object = Parse(R"({"a":12,"b":"12","c":12.0,"d":" -3 "})");
    for (const char* key : {"a", "b", "c"}) EXPECT_EQ(12, Integer(object, key)) << key;
    EXPECT_EQ(-3, Integer(object, "d"));
}

TEST(JsonFieldsTest, OtherValuesAreNoInteger) {
    const auto object = Parse(
        R"({"a":2.5,"b":"N/A","c":null,"d":"3x","e":true,"f":1e300,"g":18446744073709551615,"h":""})");
    for (const char* key : {"a", "b", "c", "d", "e", "f", "g", "h", "missing"}) {
        EXPECT_EQ(std::nullopt, Integer(object, key)) << key;
    }
}

TEST(JsonFieldsTest, ObjectWalkEndsInNullptrAtAWrongType) {
    const auto object = Parse(R"({"A":{"B":{"x":1}},"C":[{}]})");
    ASSERT_NE(nullptr, ObjectAt(object, {"A", "B"}));
    EXPECT_EQ(1, Integer(*ObjectAt(object, {"A", "B"}), "x"));
    EXPECT_EQ(nullptr, ObjectAt(object, {"A", "B", "x"}));
    EXPECT_EQ(nullptr, ObjectAt(object, {"C", "B"}));
    EXPECT_EQ(nullptr, Object(object, "C"));
    EXPECT_EQ(nullptr, Array(object, "A"));
    EXPECT_NE(nullptr, Array(object, "C"));
}

TEST(JsonFieldsTest, ObjectsPassOverWhatIsNoObject) {
    EXPECT_EQ(2U, Objects(Parse(R"({"L":[{"a":1},null,"x",{"b":2}]})"), "L").size());
    EXPECT_EQ(1U, Objects(Parse(R"({"L":{"a":1}})"), "L").size());
    EXPECT_EQ(0U, Objects(Parse(R"({"L":"x"})"), "L").size());
    EXPECT_EQ(0U, Objects(Parse("{}"), "L").size());
}

TEST(JsonFieldsTest, TextsTakeArrayOrSingleValue) {
    EXPECT_THAT(Texts(Parse(R"({"L":["a",null,"",3]})"), "L"), ElementsAre("a", "3"));
    EXPECT_THAT(Texts(Parse(R"({"L":"a"})"), "L"), ElementsAre("a"));
    EXPECT_THAT(Texts(Parse(R"({"L":null})"), "L"), IsEmpty());
}

TEST(JsonFieldsTest, LinkIsObjectOrPlainString) {
    const auto object = Parse(
        R"({"a":{"@odata.id":"/redfish/v1/X"},"b":"/redfish/v1/Y","c":{"@odata.id":5},"d":7,
            "e":{"href":"/redfish/v1/Z"},"f":null})");
    EXPECT_EQ("/redfish/v1/X", Link(object, "a"));
    EXPECT_EQ("/redfish/v1/Y", Link(object, "b"));
    for (const char* key : {"c", "d", "e", "f", "missing"}) EXPECT_EQ("", Link(object, key)) << key;
}

TEST(JsonFieldsTest, LinksKeepOrderAndTakeASingleLink) {
    EXPECT_THAT(
        Links(Parse(R"({"L":[{"@odata.id":"/b"},"/a",null,{},[],{"@odata.id":"/c"}]})"), "L"),
        ElementsAre("/b", "/a", "/c"));
    EXPECT_THAT(Links(Parse(R"({"L":{"@odata.id":"/b"}})"), "L"), ElementsAre("/b"));
    EXPECT_THAT(Links(Parse(R"({"L":"/b"})"), "L"), ElementsAre("/b"));
    EXPECT_THAT(Links(Parse(R"({"L":4})"), "L"), IsEmpty());
}

TEST(JsonFieldsTest, PointerLeadsIntoObjectsAndArrays) {
    const auto object = Parse(R"({"PowerSupplies":[{"Name":"PSU 1"},{"a/b":{"m~n":"deep"}}]})");
    const auto* value = AtPointer(object, "/PowerSupplies/1/a~1b/m~0n");
    ASSERT_NE(nullptr, value);
    EXPECT_EQ("deep", TextOf(*value));
    ASSERT_NE(nullptr, AtPointer(object, "PowerSupplies/0"));
}

TEST(JsonFieldsTest, PointerThatLeadsNowhereIsNull) {
    const auto object = Parse(R"({"PowerSupplies":[{"Name":"PSU 1"}],"Text":"x"})");
    for (const char* pointer : {"", "/", "/Missing", "/PowerSupplies/1", "/PowerSupplies/-1",
                                "/PowerSupplies/x", "/Text/0", "/PowerSupplies/0/Name/deeper",
                                "/PowerSupplies/99999999999999999999", "//", "/PowerSupplies/"}) {
        EXPECT_EQ(nullptr, AtPointer(object, pointer)) << pointer;
    }
}

}  // namespace
}  // namespace Vantix::transport::json
