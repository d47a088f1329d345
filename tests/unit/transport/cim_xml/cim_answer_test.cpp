#include "transport/cim_xml/cim_answer.h"

#include <gtest/gtest.h>

#include "cim_text.h"

namespace Vantix::transport {
namespace {

CimInstance OnlyInstance(const std::string& values) {
    CimAnswer answer = ReadCimAnswer(Returned(values), 7);
    EXPECT_FALSE(answer.failure) << answer.failure.text;
    EXPECT_EQ(answer.instances.size(), 1U);
    return answer.instances.empty() ? CimInstance() : answer.instances.front();
}

TEST(CimAnswerTest, InstanceComesWithClassNameAndProperties) {
    const CimInstance instance = OnlyInstance(NamedInstance("id-1", Property("Version", "1.2")));

    EXPECT_EQ(instance.class_name, "EX_SoftwareIdentity");
    EXPECT_EQ(KeyText(instance.name), "=id-1");
    EXPECT_EQ(instance.Text("Version"), "1.2");
}

TEST(CimAnswerTest, SeveralInstancesKeepTheirOrder) {
    const CimAnswer answer = ReadCimAnswer(Returned(NamedInstance("b") + NamedInstance("a")), 7);

    ASSERT_EQ(answer.instances.size(), 2U);
    EXPECT_EQ(answer.instances[0].Text("InstanceID"), "b");
    EXPECT_EQ(answer.instances[1].Text("InstanceID"), "a");
}

TEST(CimAnswerTest, LineBreaksAroundValuesAreTrimmed) {
    EXPECT_EQ(OnlyInstance(NamedInstance("i", Property("Name", "\nHello World\n"))).Text("Name"),
              "Hello World");
}

TEST(CimAnswerTest, CdataAndEntitiesBecomeText) {
    EXPECT_EQ(OnlyInstance(NamedInstance("i", Property("Name", "a&amp;&#65;<![CDATA[<b>]]>")))
                  .Text("Name"),
              "a&A<b>");
}

TEST(CimAnswerTest, PropagatedPropertyWithoutValueIsNull) {
    const CimInstance instance = OnlyInstance(NamedInstance(
        "i", "<PROPERTY NAME=\"VersionString\" TYPE=\"string\" PROPAGATED=\"true\"/>"));

    EXPECT_EQ(instance.properties.count("VersionString"), 1U);
    EXPECT_EQ(instance.Text("VersionString"), "");
}

TEST(CimAnswerTest, ArrayKeepsItsValuesAndTheirPlaces) {
    const CimInstance instance = OnlyInstance(
        NamedInstance("i",
                      "<PROPERTY.ARRAY NAME=\"Classifications\" TYPE=\"uint16\"><VALUE.ARRAY>"
                      "<VALUE>10</VALUE><VALUE.NULL/><VALUE>6</VALUE></VALUE.ARRAY>"
                      "</PROPERTY.ARRAY><PROPERTY.ARRAY NAME=\"Empty\" TYPE=\"uint16\"/>"));

    EXPECT_EQ(instance.Values("Classifications"), (std::vector<std::string>{"10", "", "6"}));
    EXPECT_TRUE(instance.Values("Empty").empty());
}

TEST(CimAnswerTest, ArrayInsideAPlainPropertyIsRead) {
    const CimInstance instance = OnlyInstance(
        NamedInstance("i",
                      "<PROPERTY NAME=\"Roles\"><VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>"
                      "</PROPERTY>"));

    EXPECT_EQ(instance.Text("Roles"), "a");
}

TEST(CimAnswerTest, ReferenceIsReadThroughItsPath) {
    const std::string path =
        "<INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
        "</LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME CLASSNAME=\"EX_System\"><KEYBINDING "
        "NAME=\"Name\"><KEYVALUE>s1</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH>";
    const CimInstance instance = OnlyInstance(NamedInstance(
        "i", "<PROPERTY.REFERENCE NAME=\"System\" REFERENCECLASS=\"CIM_System\"><VALUE.REFERENCE>" +
                 path + "</VALUE.REFERENCE></PROPERTY.REFERENCE>"));

    EXPECT_EQ(instance.Reference("System"), "=s1");
    EXPECT_EQ(instance.references.at("System").class_name, "EX_System");
}

TEST(CimAnswerTest, KeyThatIsAReferenceNamesWhatItRefersTo) {
    const std::string inner =
        "<INSTANCENAME CLASSNAME=\"B\"><KEYBINDING NAME=\"Id\"><KEYVALUE>b1</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME>";
    const CimAnswer answer = ReadCimAnswer(
        Returned("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"Left\"><VALUE.REFERENCE>" +
                 inner + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>"),
        7);

    ASSERT_EQ(answer.names.size(), 1U);
    EXPECT_EQ(answer.names.front().keys.at("Left").text, "=b1");
    EXPECT_EQ(answer.names.front().keys.at("Left").type, "reference");
}

TEST(CimAnswerTest, NamesAloneAreRead) {
    const CimAnswer answer = ReadCimAnswer(
        Returned("<INSTANCENAME CLASSNAME=\"A\"><KEYVALUE VALUETYPE=\"numeric\">4</KEYVALUE>"
                 "</INSTANCENAME>"),
        7);

    ASSERT_EQ(answer.names.size(), 1U);
    EXPECT_EQ(KeyText(answer.names.front()), "=4");
    EXPECT_EQ(answer.names.front().keys.at("").type, "numeric");
}

TEST(CimAnswerTest, InstanceWithoutNameIsRead) {
    const CimInstance instance =
        OnlyInstance("<INSTANCE CLASSNAME=\"A\">" + Property("Name", "n") + "</INSTANCE>");

    EXPECT_EQ(instance.Text("Name"), "n");
    EXPECT_EQ(KeyText(instance.name), "");
}

TEST(CimAnswerTest, InstanceWithAPathIsRead) {
    const CimInstance instance = OnlyInstance(
        "<VALUE.OBJECTWITHPATH><INSTANCEPATH><INSTANCENAME CLASSNAME=\"A\"><KEYBINDING "
        "NAME=\"Id\"><KEYVALUE>x</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH><INSTANCE "
        "CLASSNAME=\"A\"/></VALUE.OBJECTWITHPATH>");

    EXPECT_EQ(KeyText(instance.name), "=x");
}

TEST(CimAnswerTest, NoReturnValueIsAnEmptyList) {
    const CimAnswer answer = ReadCimAnswer(Response(""), 7);

    EXPECT_FALSE(answer.failure);
    EXPECT_TRUE(answer.instances.empty());
}

TEST(CimAnswerTest, ErrorCarriesStatusAndWords) {
    const CimAnswer answer = ReadCimAnswer(CimError(5, "no such class"), 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kCimError);
    EXPECT_EQ(answer.failure.cim_status, 5);
    EXPECT_EQ(answer.failure.text, "CIM status 5 CIM_ERR_INVALID_CLASS: no such class");
    EXPECT_TRUE(answer.failure.IsElsewhere());
}

TEST(CimAnswerTest, OnlyUnknownNamespaceAndClassPointElsewhere) {
    for (int status = 1; status <= 17; ++status) {
        const CimAnswer answer = ReadCimAnswer(CimError(status, "x"), 7);
        EXPECT_EQ(answer.failure.IsElsewhere(), status == 3 || status == 5) << status;
    }
}

TEST(CimAnswerTest, DeniedAccessIsARefusal) {
    EXPECT_EQ(ReadCimAnswer(CimError(2, "role"), 7).failure.problem, CimProblem::kForbidden);
}

TEST(CimAnswerTest, ErrorWinsOverItsChildrenAndSiblings) {
    const CimAnswer answer = ReadCimAnswer(
        Response("<IRETURNVALUE>" + NamedInstance("i") +
                 "</IRETURNVALUE><ERROR CODE=\"1\"><INSTANCE CLASSNAME=\"CIM_Error\"/></ERROR>"),
        7);

    EXPECT_EQ(answer.failure.cim_status, kCimFailed);
    EXPECT_TRUE(answer.instances.empty());
}

TEST(CimAnswerTest, ErrorWithoutUsableCodeIsAFailure) {
    const CimAnswer answer = ReadCimAnswer(Response("<ERROR CODE=\"many\"/>"), 7);

    EXPECT_EQ(answer.failure.cim_status, kCimFailed);
}

TEST(CimAnswerTest, AnswerToAnotherRequestIsRefused) {
    const CimAnswer answer = ReadCimAnswer(Returned(NamedInstance("i"), "8"), 7);

    EXPECT_EQ(answer.failure.problem, CimProblem::kBadBody);
    EXPECT_TRUE(answer.instances.empty());
    EXPECT_EQ(answer.failure.text, "the answer belongs to another request (message 8, not 7)");
}

TEST(CimAnswerTest, MessageNumberMustBeANumber) {
    EXPECT_TRUE(ReadCimAnswer(Returned("", "7x"), 7).failure);
    EXPECT_TRUE(ReadCimAnswer(Returned("", ""), 7).failure);
}

TEST(CimAnswerTest, UnknownAttributesAndElementsArePassedOver) {
    const CimInstance instance = OnlyInstance(
        "<SOMETHING/>" +
        NamedInstance("i",
                      "<QUALIFIER NAME=\"Key\"><VALUE>TRUE</VALUE></QUALIFIER><PROPERTY "
                      "NAME=\"Name\" TYPE=\"string\" VALUETYPE=\"string\" ODD=\"1\"><VALUE>n"
                      "</VALUE></PROPERTY><PROPERTY><VALUE>nameless</VALUE></PROPERTY>"));

    EXPECT_EQ(instance.Text("Name"), "n");
    EXPECT_EQ(instance.properties.size(), 2U);
}

TEST(CimAnswerTest, KeyWithBothTypeAndValueTypeIsRead) {
    const CimAnswer answer = ReadCimAnswer(
        Returned("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"N\"><KEYVALUE TYPE=\"uint16\" "
                 "VALUETYPE=\"numeric\">3</KEYVALUE></KEYBINDING></INSTANCENAME>"),
        7);

    ASSERT_EQ(answer.names.size(), 1U);
    EXPECT_EQ(answer.names.front().keys.at("N").text, "3");
}

}  // namespace
}  // namespace Vantix::transport
