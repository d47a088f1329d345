#include "platform/redfish/bmc_kind.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

struct KindCase {
    const char* vendor;
    const char* product;
    const char* model;
    const char* firmware;
    const char* text;
};

std::string KindFor(const KindCase& facts) {
    return BmcKindText(BmcKindOf({facts.vendor, facts.product, facts.model, "", facts.firmware}));
}

TEST(BmcKindTest, FactsGiveTheKindOfTheRuleTable) {
    const KindCase cases[] = {
        {"", "", "TAVRO3", "", "Tavro"},
        {"Example", "Tavro Controller", "", "", "Tavro"},
        {"", "", "tavro v2", "", "Tavro"},
        {"", "", "", "Tavro 4.1", "Tavro"},
        {"", "", "Ossa2", "", "Ossa2"},
        {"", "", "OSSA 2", "", "Ossa2"},
        {"", "", "Ossa", "", "Ossa"},
        {"", "Ossa Controller", "", "", "Ossa"},
        {"", "", "Vesk3", "", "Vesk"},
        {"", "Vesk Enclosure Manager", "Module", "", "Vesk"},
        {"", "AMI Redfish Server", "410810600", "12.84", "AMI"},
        {"AMI", "", "", "", "AMI"},
        {"American Megatrends International", "", "", "", "AMI"},
        {"", "", "MegaRAC SP-X", "", "AMI"},
        {"", "", "iLO 7", "1.14", "iLO"},
        {"", "Integrated Lights-Out 6", "", "", "iLO"},
        {"Maker", "Integrated Maker Remote Access Controller", "16G Monolithic", "", "iDRAC"},
        {"", "", "iRMC S6", "", "iRMC"},
        {"", "", "CIMC", "", "CIMC"},
        {"", "", "OpenBmc", "2.15.0", "OpenBMC"},
        {"", "", "Joo Janta 200", "1.45", "BMC"},
        {"", "", "", "", "BMC"},
    };
    for (const KindCase& one : cases) {
        EXPECT_EQ(one.text, KindFor(one)) << one.product << '|' << one.model;
    }
}

TEST(BmcKindTest, ShortNamesAreFoundAsWordsOnly) {
    EXPECT_EQ("BMC", KindFor({"", "", "Glossary 2", "", ""}));
    EXPECT_EQ("BMC", KindFor({"", "", "Kilo Controller", "", ""}));
    EXPECT_EQ("BMC", KindFor({"Amiable Servers", "", "", "", ""}));
}

TEST(BmcKindTest, MakersNameDoesNotHideTheBmcsOwn) {
    EXPECT_EQ("Tavro", KindFor({"AMI", "AMI Redfish Server", "Tavro 2", "", ""}));
}

TEST(BmcKindTest, EveryKindHasADistinctTextAndNoneIsEmpty) {
    std::vector<std::string> texts;
    for (int kind = kBmcKindOther; kind <= kBmcKindIrmc; ++kind) texts.push_back(BmcKindText(kind));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_NE("", texts[i]) << i;
        EXPECT_EQ(i, static_cast<std::size_t>(std::find(texts.begin(), texts.end(), texts[i]) -
                                              texts.begin()));
    }
    for (const int kind : {-1, 0, 12, 1000}) EXPECT_EQ("", BmcKindText(kind)) << kind;
}

TEST(BmcKindTest, UnknownWorkingBmcHasANonZeroType) {
    EXPECT_NE(0, BmcKindOf({}));
}

TEST(BmcKindTest, ThirdGenerationIsToldByModelProductOrFirmware) {
    for (const char* model : {"TAVRO3", "Tavro 3", "Tavro V3", "tavro_v3", "Tavro Gen 3",
                              "Tavro Generation 3 Controller", "Example Tavro-3"}) {
        EXPECT_TRUE(IsThirdGenerationTavro({"", "", model, "", ""})) << model;
    }
    EXPECT_TRUE(IsThirdGenerationTavro({"", "Tavro 3", "", "", ""}));
    EXPECT_TRUE(IsThirdGenerationTavro({"", "Tavro", "", "", "TV3A42E 3.10"}));
    EXPECT_TRUE(IsThirdGenerationTavro({"", "Tavro", "", "", "tv3a42e"}));
}

TEST(BmcKindTest, OtherGenerationsAndOtherBmcsAreNotTheThird) {
    for (const char* model : {"Tavro", "TAVRO2", "Tavro 30", "Tavro V", "Tavro Mark 3", "Ossa 3"}) {
        EXPECT_FALSE(IsThirdGenerationTavro({"", "", model, "", "3.1"})) << model;
    }
    EXPECT_FALSE(IsThirdGenerationTavro({"", "", "Ossa", "", "TV3A42E"}));
}

TEST(BmcKindTest, FactsComeFromRootAndManager) {
    ServerSnapshot snapshot;
    snapshot.root = ParseObject(R"({"Vendor":"V","Product":"P"})");
    const Resource manager =
        MakeResource("/m", R"({"Model":"M","Name":"N","FirmwareVersion":1.5})");
    const BmcFacts facts = ReadBmcFacts(snapshot, &manager);
    EXPECT_EQ("V|P|M|N|1.5", facts.vendor + "|" + facts.product + "|" + facts.model + "|" +
                                 facts.name + "|" + facts.firmware_version);
    EXPECT_EQ("", ReadBmcFacts(snapshot, nullptr).model);
}

TEST(BmcKindTest, ReleaseNameIsFoundBelowAnyMaker) {
    const auto name = [](const std::string& json) {
        const Resource manager = MakeResource("/m", json);
        return ReadReleaseName(&manager);
    };
    EXPECT_EQ("spring", name(R"({"Oem":{"A":null,"B":{"ReleaseName":"spring"}}})"));
    EXPECT_EQ("spring", name(R"({"Oem":{"ReleaseName":"spring"}})"));
    for (const char* json : {"{}", R"({"Oem":null})", R"({"Oem":{"B":{"ReleaseName":[1]}}})",
                             R"({"Oem":["ReleaseName"]})"}) {
        EXPECT_EQ("", name(json)) << json;
    }
    EXPECT_EQ("", ReadReleaseName(nullptr));
}

}  // namespace
}  // namespace Vantix::redfish
