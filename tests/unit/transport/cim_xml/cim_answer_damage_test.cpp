// Answers that are damaged: what the reader keeps of them, and what it says.
#include <gtest/gtest.h>

#include "cim_text.h"
#include "transport/cim_xml/cim_answer.h"

namespace Vantix::transport {
namespace {

std::string Cut(const std::string& text, const std::string& before) {
    return text.substr(0, text.find(before));
}

TEST(CimAnswerDamageTest, InstanceWithoutClassNameIsSkippedAlone) {
    const CimAnswer answer = ReadCimAnswer(
        Returned(NamedInstance("a") + "<VALUE.NAMEDINSTANCE><INSTANCE/></VALUE.NAMEDINSTANCE>" +
                 NamedInstance("b")),
        7);

    EXPECT_FALSE(answer.failure);
    EXPECT_EQ(answer.instances.size(), 2U);
    EXPECT_EQ(answer.skipped, (std::vector<std::string>{"INSTANCE without CLASSNAME"}));
}

TEST(CimAnswerDamageTest, MissingClassNameIsTakenFromTheInstancesName) {
    const CimAnswer answer =
        ReadCimAnswer(Returned("<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"A\"/><INSTANCE/>"
                               "</VALUE.NAMEDINSTANCE>"),
                      7);

    ASSERT_EQ(answer.instances.size(), 1U);
    EXPECT_EQ(answer.instances.front().class_name, "A");
}

TEST(CimAnswerDamageTest, ValueWithoutInstanceIsSkippedAlone) {
    const CimAnswer answer = ReadCimAnswer(
        Returned("<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"A\"/></VALUE.NAMEDINSTANCE>" +
                 NamedInstance("b")),
        7);

    EXPECT_EQ(answer.instances.size(), 1U);
    EXPECT_EQ(answer.skipped, (std::vector<std::string>{"VALUE.NAMEDINSTANCE without INSTANCE"}));
}

TEST(CimAnswerDamageTest, TruncatedAnswerKeepsWhatWasComplete) {
    const std::string whole = Returned(NamedInstance("a") + NamedInstance("b") +
                                       NamedInstance("c", Property("N", "cut")));

    const CimAnswer answer = ReadCimAnswer(Cut(whole, "cut"), 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kBadBody);
    EXPECT_NE(answer.failure.text.find("cannot be read whole"), std::string::npos);
    ASSERT_EQ(answer.instances.size(), 2U);
    EXPECT_EQ(answer.instances.back().Text("InstanceID"), "b");
    EXPECT_EQ(answer.skipped.size(), 1U);
}

TEST(CimAnswerDamageTest, LastInstanceIsKeptWhenItEndsBeforeTheBreak) {
    const CimAnswer answer =
        ReadCimAnswer(Cut(Returned(NamedInstance("a") + NamedInstance("b")), "</IRETURNVALUE>"), 7);

    EXPECT_TRUE(answer.failure);
    EXPECT_EQ(answer.instances.size(), 2U);
    EXPECT_TRUE(answer.skipped.empty());
}

TEST(CimAnswerDamageTest, EveryTruncationGivesAFailureAndWholeInstancesOnly) {
    const std::string whole =
        Returned(NamedInstance("a", Property("N", "1")) + NamedInstance("b", Property("N", "2")));
    for (std::size_t size = 0; size + 2 < whole.size(); ++size) {
        const CimAnswer answer = ReadCimAnswer(whole.substr(0, size), 7);
        EXPECT_TRUE(answer.failure) << size;
        EXPECT_FALSE(answer.failure.text.empty()) << size;
        for (const CimInstance& instance : answer.instances) {
            EXPECT_FALSE(instance.Text("N").empty()) << size;
        }
    }
}

TEST(CimAnswerDamageTest, WrongEndTagKeepsWhatStoodBeforeIt) {
    const CimAnswer answer = ReadCimAnswer(
        Returned(NamedInstance("a") + "<VALUE.NAMEDINSTANCE></INSTANCE>" + NamedInstance("b")), 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kBadBody);
    ASSERT_EQ(answer.instances.size(), 1U);
    EXPECT_EQ(answer.instances.front().Text("InstanceID"), "a");
}

TEST(CimAnswerDamageTest, DeepNestingKeepsWhatStoodBeforeIt) {
    std::string deep;
    for (int level = 0; level < 100000; ++level) deep += "<a>";

    const CimAnswer answer = ReadCimAnswer(Returned(NamedInstance("a") + deep), 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kBadBody);
    EXPECT_NE(answer.failure.text.find("nested too deeply"), std::string::npos);
    EXPECT_EQ(answer.instances.size(), 1U);
}

TEST(CimAnswerDamageTest, EntityBombIsRefusedUnread) {
    const CimAnswer answer = ReadCimAnswer(
        "<!DOCTYPE CIM [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]><CIM>&b;</CIM>", 7);

    EXPECT_EQ(answer.failure.text, "the answer was not read: it declares entities");
    EXPECT_TRUE(answer.instances.empty());
}

TEST(CimAnswerDamageTest, UnknownEntityStaysAsItStands) {
    const CimAnswer answer =
        ReadCimAnswer(Returned(NamedInstance("i", Property("N", "a &odd; b"))), 7);

    ASSERT_EQ(answer.instances.size(), 1U);
    EXPECT_EQ(answer.instances.front().Text("N"), "a &odd; b");
}

TEST(CimAnswerDamageTest, ControlBytesAndBadUtf8AreCleaned) {
    const CimAnswer answer =
        ReadCimAnswer(Returned(NamedInstance("i", Property("N", "a\x01\rb\xFF"))), 7);

    ASSERT_EQ(answer.instances.size(), 1U);
    EXPECT_EQ(answer.instances.front().Text("N"), "a  b\xEF\xBF\xBD");
}

TEST(CimAnswerDamageTest, NulByteCostsNothingElse) {
    const std::string value = std::string("a") + '\0' + "b";
    const CimAnswer answer =
        ReadCimAnswer(Returned(NamedInstance("i", Property("N", value)) + NamedInstance("j")), 7);

    EXPECT_FALSE(answer.failure) << answer.failure.text;
    EXPECT_EQ(answer.instances.size(), 2U);
}

TEST(CimAnswerDamageTest, ByteOrderMarkIsNoHarm) {
    EXPECT_FALSE(ReadCimAnswer("\xEF\xBB\xBF" + Returned(NamedInstance("i")), 7).failure);
}

TEST(CimAnswerDamageTest, WebPageIsNoCimService) {
    const CimAnswer answer = ReadCimAnswer("<html><body>Log in</body></html>", 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kNoService);
    EXPECT_EQ(answer.failure.text, "the answer is no CIM-XML: <html><body>Log in</body></html>");
}

TEST(CimAnswerDamageTest, EmptyAnswerIsNoCimService) {
    EXPECT_EQ(ReadCimAnswer("", 7).failure.problem, CimProblem::kNoService);
    EXPECT_EQ(ReadCimAnswer("", 7).failure.text, "the answer is empty");
}

TEST(CimAnswerDamageTest, MessageWithoutResponseIsAFailure) {
    const CimAnswer answer =
        ReadCimAnswer("<CIM><MESSAGE ID=\"7\"><SIMPLERSP/></MESSAGE></CIM>", 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kBadBody);
}

TEST(CimAnswerDamageTest, DeepNamesWithinNamesAreCutOff) {
    std::string name = "<INSTANCENAME CLASSNAME=\"A\"><KEYVALUE>x</KEYVALUE></INSTANCENAME>";
    for (int level = 0; level < 20; ++level) {
        name = "<INSTANCENAME CLASSNAME=\"A\"><VALUE.REFERENCE>" + name +
               "</VALUE.REFERENCE></INSTANCENAME>";
    }

    const CimAnswer answer = ReadCimAnswer(Returned(name), 7);

    EXPECT_FALSE(answer.failure);
    EXPECT_EQ(answer.names.size(), 1U);
}

TEST(CimAnswerDamageTest, ThousandsOfInstancesAreAllRead) {
    std::string values;
    for (int n = 0; n < 5000; ++n) values += NamedInstance("id-" + std::to_string(n));

    EXPECT_EQ(ReadCimAnswer(Returned(values), 7).instances.size(), 5000U);
}

}  // namespace
}  // namespace Vantix::transport
