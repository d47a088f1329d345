// The simulated CIM-XML service, asked by hand: strict about requests, right about answers.
#include <gtest/gtest.h>

#include "integration/simulators/test_client.h"

namespace simulator_test {
namespace {

struct Asked {
    std::string type = "application/xml; charset=\"utf-8\"";
    std::string operation = "MethodCall";
    std::string method = "EnumerateInstances";
    std::string object = "root%2Fcimv2";
    std::string name = "EnumerateInstances";
    std::string class_name = "CIM_Slot";
    std::string parameters = "<IPARAMVALUE NAME=\"LocalOnly\"><VALUE>FALSE</VALUE></IPARAMVALUE>";
    std::string id = "42";
    std::string versions = "CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"";
};

std::string Body(const Asked& asked) {
    return "<?xml version=\"1.0\"?><CIM " + asked.versions + "><MESSAGE ID=\"" + asked.id +
           "\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" + asked.name +
           "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/>"
           "</LOCALNAMESPACEPATH><IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" +
           asked.class_name + "\"/></IPARAMVALUE>" + asked.parameters +
           "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

class SimulatedCimTest : public ::testing::Test {
  protected:
    Reply Ask(const Asked& asked) { return Send(asked, Body(asked)); }
    Reply Send(const Asked& asked, const std::string& body) {
        TestClient client(machine_);
        client.UseBasic("demo", "demo-pass-1");
        client.AddHeader("Content-Type: " + asked.type);
        client.AddHeader("CIMOperation: " + asked.operation);
        client.AddHeader("CIMMethod: " + asked.method);
        client.AddHeader("CIMObject: " + asked.object);
        return client.Post("/cimom", body);
    }
    void ExpectRefused(const Asked& asked, const std::string& error) {
        const Reply reply = Ask(asked);
        EXPECT_GE(reply.status, 400);
        EXPECT_EQ(reply.Header("cimerror"), error);
    }

    simulators::BmcSimulator machine_{ShippedScenario(SIMULATOR_SCENARIOS "/chassis-switch")};
};

TEST_F(SimulatedCimTest, AnswerEchoesMessageAndMethod) {
    const Reply reply = Ask(Asked());

    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.Header("cimoperation"), "MethodResponse");
    EXPECT_EQ(reply.Header("content-type"), "application/xml; charset=\"utf-8\"");
    EXPECT_TRUE(Has(reply.body, "<MESSAGE ID=\"42\" PROTOCOLVERSION=\"1.0\">"));
    EXPECT_TRUE(Has(reply.body, "<IMETHODRESPONSE NAME=\"EnumerateInstances\"><IRETURNVALUE>"));
    EXPECT_EQ(CountOf("<VALUE.NAMEDINSTANCE>", reply.body), 2);
}

TEST_F(SimulatedCimTest, SubclassesComeUnderTheirOwnName) {
    EXPECT_TRUE(Has(Ask(Asked()).body, "<INSTANCE CLASSNAME=\"EX_Bay\">"));
}

TEST_F(SimulatedCimTest, InheritedPropertiesNeedLocalOnlySwitchedOff) {
    Asked asked;
    asked.parameters.clear();

    EXPECT_FALSE(Has(Ask(asked).body, "<PROPERTY"));
}

TEST_F(SimulatedCimTest, NamesAloneCarryNoInstances) {
    Asked asked;
    asked.method = asked.name = "EnumerateInstanceNames";
    asked.parameters.clear();

    const Reply reply = Ask(asked);

    EXPECT_EQ(CountOf("<INSTANCENAME ", reply.body), 2);
    EXPECT_FALSE(Has(reply.body, "<INSTANCE "));
}

TEST_F(SimulatedCimTest, UnknownClassIsStatusFive) {
    Asked asked;
    asked.class_name = "CIM_Fan";

    EXPECT_TRUE(Has(Ask(asked).body, "<ERROR CODE=\"5\""));
}

TEST_F(SimulatedCimTest, UnknownNamespaceIsStatusThree) {
    Asked asked;
    asked.object = "root%2Fother";
    std::string body = Body(asked);
    body.replace(body.find("cimv2"), 5, "other");

    EXPECT_TRUE(Has(Send(asked, body).body, "<ERROR CODE=\"3\""));
}

TEST_F(SimulatedCimTest, LoginIsWanted) {
    TestClient client(machine_);

    EXPECT_EQ(client.Post("/cimom", Body(Asked())).status, 401);
}

TEST_F(SimulatedCimTest, PulledEnumerationsAreRefused) {
    Asked asked;
    asked.method = asked.name = "OpenEnumerateInstances";

    ExpectRefused(asked, "request-not-valid");
}

TEST_F(SimulatedCimTest, UnknownAndRepeatedParametersAreRefused) {
    Asked asked;
    asked.parameters = "<IPARAMVALUE NAME=\"Odd\"><VALUE>1</VALUE></IPARAMVALUE>";
    ExpectRefused(asked, "request-not-valid");
    asked.parameters = Asked().parameters + Asked().parameters;
    ExpectRefused(asked, "request-not-valid");
}

TEST_F(SimulatedCimTest, HeadersMustFitTheMessage) {
    Asked type;
    type.type = "application/xml; charset=%22utf-8%22";
    ExpectRefused(type, "header-mismatch");
    Asked method;
    method.method = "GetInstance";
    ExpectRefused(method, "header-mismatch");
    Asked object;
    object.object = "root%2Fother";
    ExpectRefused(object, "header-mismatch");
    Asked operation;
    operation.operation = "MethodResponse";
    ExpectRefused(operation, "unsupported-operation");
}

TEST_F(SimulatedCimTest, MessageMustHaveNumberAndVersions) {
    Asked number;
    number.id.clear();
    ExpectRefused(number, "request-not-valid");
    Asked versions;
    versions.versions = "CIMVERSION=\"2.0\"";
    ExpectRefused(versions, "unsupported-dtd-version");
}

TEST_F(SimulatedCimTest, BrokenXmlIsRefused) {
    EXPECT_EQ(Send(Asked(), "<CIM><MESSAGE").Header("cimerror"), "request-not-well-formed");
}

TEST_F(SimulatedCimTest, FaultsCanBeAimedAtAClass) {
    simulators::FaultRule rule;
    rule.body_contains = "CIM_Slot";
    rule.fault.status = 500;
    rule.fault.headers = {{"CIMError", "simulated"}};
    machine_.SetFaults({rule});
    Asked other;
    other.class_name = "CIM_Chassis";

    ExpectRefused(Asked(), "simulated");
    EXPECT_EQ(Ask(other).status, 200);
}

TEST_F(SimulatedCimTest, ChunksAndOddHeadersCarryTheSameAnswer) {
    const std::string plain = Ask(Asked()).body;
    simulators::FaultRule rule;
    for (const auto kind :
         {simulators::Fault::Kind::kChunked, simulators::Fault::Kind::kOddHeaders}) {
        rule.fault.kind = kind;
        rule.fault.drip_bytes = 10;
        machine_.SetFaults({rule});
        EXPECT_EQ(Ask(Asked()).body, plain);
    }
}

TEST_F(SimulatedCimTest, BodiesOfCimRequestsAreRecorded) {
    static_cast<void>(Ask(Asked()));

    EXPECT_TRUE(Has(machine_.Counts().log.back().body, "CIM_Slot"));
}

TEST_F(SimulatedCimTest, MachineWithoutCimHasNoSuchService) {
    const simulators::BmcSimulator other(ShippedScenario(SIMULATOR_SCENARIOS "/rack-server"));
    TestClient client(other);
    client.UseBasic("demo", "demo-pass-1");

    EXPECT_EQ(client.Post("/cimom", Body(Asked())).status, 405);
}

TEST_F(SimulatedCimTest, MachineThatSpeaksCimOnlyHasNoRedfish) {
    TestClient client(machine_);

    EXPECT_EQ(client.Get("/redfish/v1/").status, 404);
}

}  // namespace
}  // namespace simulator_test
