#include "transport/cim_xml/cim_request.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>

namespace Vantix::transport {
namespace {

using HeaderPair = std::pair<std::string, std::string>;

pugi::xml_document Parsed(const CimCall& call, int message_id = 7) {
    pugi::xml_document document;
    const std::string text = WriteCimMessage(call, message_id);
    EXPECT_TRUE(document.load_buffer(text.data(), text.size())) << text;
    return document;
}

pugi::xml_node CallNode(const pugi::xml_document& document) {
    return document.child("CIM").child("MESSAGE").child("SIMPLEREQ").child("IMETHODCALL");
}

std::vector<std::string> ParameterNames(const CimCall& call) {
    std::vector<std::string> names;
    for (const auto& [name, value] : call.parameters) names.push_back(name);
    return names;
}

CimInstanceName SystemName() {
    CimInstanceName name;
    name.class_name = "CIM_ComputerSystem";
    name.keys["Name"] = {"a<b&\"c\">", "string"};
    name.keys["Number"] = {"4", "numeric"};
    return name;
}

TEST(CimRequestTest, HeadersStandAsTheStandardSpellsThem) {
    const auto headers = CimHeaders(EnumerateInstancesCall("root/cimv2", "CIM_Chassis"));

    const std::vector<HeaderPair> expected{{"Content-Type", "application/xml; charset=\"utf-8\""},
                                           {"CIMOperation", "MethodCall"},
                                           {"CIMMethod", "EnumerateInstances"},
                                           {"CIMObject", "root%2Fcimv2"}};
    EXPECT_EQ(headers, expected);
}

TEST(CimRequestTest, ObjectHeaderEncodesBytesOutsideAscii) {
    const auto headers = CimHeaders(EnumerateInstancesCall("root/\xC3\xA4 b", "CIM_Chassis"));

    EXPECT_EQ(headers.back(), HeaderPair("CIMObject", "root%2F%C3%A4%20b"));
}

TEST(CimRequestTest, MessageCarriesItsNumberAndVersions) {
    const auto document = Parsed(EnumerateInstancesCall("root/cimv2", "CIM_Chassis"), 4711);

    const pugi::xml_node message = document.child("CIM").child("MESSAGE");
    EXPECT_STREQ(document.child("CIM").attribute("CIMVERSION").value(), "2.0");
    EXPECT_STREQ(document.child("CIM").attribute("DTDVERSION").value(), "2.0");
    EXPECT_STREQ(message.attribute("ID").value(), "4711");
    EXPECT_STREQ(message.attribute("PROTOCOLVERSION").value(), "1.0");
}

TEST(CimRequestTest, NamespaceIsSplitAtSlashes) {
    const auto document = Parsed(EnumerateInstancesCall("/root/ex/deep", "CIM_Chassis"));

    std::string joined;
    for (const auto& part : CallNode(document).child("LOCALNAMESPACEPATH").children("NAMESPACE")) {
        joined += std::string("/") + part.attribute("NAME").value();
    }
    EXPECT_EQ(joined, "/root/ex/deep");
}

TEST(CimRequestTest, EnumerationCarriesTheFewestParameters) {
    const CimCall call = EnumerateInstancesCall("root/cimv2", "CIM_SoftwareIdentity");

    EXPECT_EQ(ParameterNames(call), (std::vector<std::string>{"ClassName", "LocalOnly"}));
    EXPECT_EQ(call.parameters.back().second, "<VALUE>FALSE</VALUE>");
}

TEST(CimRequestTest, EnumerationNamesItsClass) {
    const auto document = Parsed(EnumerateInstancesCall("root/cimv2", "CIM_SoftwareIdentity"));

    const auto parameter = CallNode(document).child("IPARAMVALUE");
    EXPECT_STREQ(CallNode(document).attribute("NAME").value(), "EnumerateInstances");
    EXPECT_STREQ(parameter.attribute("NAME").value(), "ClassName");
    EXPECT_STREQ(parameter.child("CLASSNAME").attribute("NAME").value(), "CIM_SoftwareIdentity");
}

TEST(CimRequestTest, NamesAreEnumeratedByClassAlone) {
    const CimCall call = EnumerateInstanceNamesCall("root/cimv2", "CIM_Chassis");

    EXPECT_EQ(call.method, "EnumerateInstanceNames");
    EXPECT_EQ(ParameterNames(call), (std::vector<std::string>{"ClassName"}));
}

TEST(CimRequestTest, InstanceIsNamedByEscapedKeys) {
    const auto document = Parsed(GetInstanceCall("root/cimv2", SystemName()));

    const auto name = CallNode(document).child("IPARAMVALUE").child("INSTANCENAME");
    EXPECT_STREQ(name.attribute("CLASSNAME").value(), "CIM_ComputerSystem");
    EXPECT_STREQ(name.child("KEYBINDING").child("KEYVALUE").text().get(), "a<b&\"c\">");
}

TEST(CimRequestTest, KeysKeepTheirTypes) {
    const auto document = Parsed(GetInstanceCall("root/cimv2", SystemName()));

    const auto name = CallNode(document).child("IPARAMVALUE").child("INSTANCENAME");
    const auto number = name.find_child_by_attribute("KEYBINDING", "NAME", "Number");
    EXPECT_STREQ(number.child("KEYVALUE").attribute("VALUETYPE").value(), "numeric");
}

TEST(CimRequestTest, AssociatorsLeaveOutEmptyRestrictions) {
    const CimCall all = AssociatorsCall("root/cimv2", SystemName(), "", "");
    const CimCall some = AssociatorsCall("root/cimv2", SystemName(), "CIM_A", "CIM_B");

    EXPECT_EQ(ParameterNames(all), (std::vector<std::string>{"ObjectName"}));
    EXPECT_EQ(ParameterNames(some),
              (std::vector<std::string>{"ObjectName", "AssocClass", "ResultClass"}));
}

}  // namespace
}  // namespace Vantix::transport
