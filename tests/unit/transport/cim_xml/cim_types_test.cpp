#include "transport/cim_xml/cim_types.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

CimInstanceName Name(const std::string& class_name,
                     const std::map<std::string, std::string>& keys) {
    CimInstanceName name;
    name.class_name = class_name;
    for (const auto& [key, value] : keys) name.keys[key].text = value;
    return name;
}

TEST(CimTypesTest, NamesDifferInMoreThanLetterCase) {
    EXPECT_TRUE(IsSameCimName("CIM_SoftwareIdentity", "cim_softwareidentity"));
    EXPECT_FALSE(IsSameCimName("CIM_SoftwareIdentity", "CIM_SoftwareIdentities"));
    EXPECT_FALSE(IsSameCimName("", "A"));
}

TEST(CimTypesTest, PropertyIsFoundInAnyLetterCase) {
    CimInstance instance;
    instance.properties["VersionString"] = {"1.2"};

    EXPECT_EQ(instance.Text("versionstring"), "1.2");
}

TEST(CimTypesTest, AbsentPropertyIsEmpty) {
    const CimInstance instance;

    EXPECT_EQ(instance.Text("VersionString"), "");
    EXPECT_TRUE(instance.Values("Classifications").empty());
    EXPECT_EQ(instance.Reference("System"), "");
}

TEST(CimTypesTest, NullPropertyIsEmpty) {
    CimInstance instance;
    instance.properties["VersionString"] = {};

    EXPECT_EQ(instance.Text("VersionString"), "");
}

TEST(CimTypesTest, KeyTextIgnoresClassAndOrderAndCaseOfKeyNames) {
    const auto left = Name("CIM_ComputerSystem", {{"Name", "s1"}, {"CreationClassName", "EX"}});
    const auto right = Name("EX_ComputerSystem", {{"NAME", "s1"}, {"creationclassname", "EX"}});

    EXPECT_EQ(KeyText(left), KeyText(right));
}

TEST(CimTypesTest, KeyTextHeedsLetterCaseOfValues) {
    EXPECT_NE(KeyText(Name("A", {{"InstanceID", "x"}})), KeyText(Name("A", {{"InstanceID", "X"}})));
}

TEST(CimTypesTest, SoleKeyJoinsWithAndWithoutItsName) {
    EXPECT_EQ(KeyText(Name("A", {{"InstanceID", "x"}})), KeyText(Name("A", {{"", "x"}})));
}

TEST(CimTypesTest, NameWithoutKeysHasNoKeyText) {
    EXPECT_EQ(KeyText(Name("A", {})), "");
}

}  // namespace
}  // namespace Vantix::transport
