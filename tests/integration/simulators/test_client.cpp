#include "integration/simulators/test_client.h"

#include <cctype>
#include <utility>

namespace simulator_test {
namespace {

std::size_t TakeBody(char* data, std::size_t size, std::size_t count, void* reply) {
    static_cast<Reply*>(reply)->body.append(data, size * count);
    return size * count;
}

std::size_t TakeHeader(char* data, std::size_t size, std::size_t count, void* reply) {
    const std::string line(data, size * count);
    const std::size_t colon = line.find(": ");
    if (colon != std::string::npos) {
        std::string name = line.substr(0, colon);
        for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const std::size_t end = line.find_last_not_of("\r\n");
        static_cast<Reply*>(reply)->headers[name] = line.substr(colon + 2, end - colon - 1);
    }
    return size * count;
}

}  // namespace

std::string Reply::Header(const std::string& name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? std::string() : found->second;
}

TestClient::TestClient(const simulators::BmcSimulator& bmc) : TestClient(bmc.Url(), bmc.CaFile()) {}

TestClient::TestClient(std::string base_url, const std::string& ca_file)
    : curl_(curl_easy_init()), base_url_(std::move(base_url)) {
    curl_easy_setopt(curl_, CURLOPT_PROXY, "");
    curl_easy_setopt(curl_, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl_, CURLOPT_TIMEOUT_MS, 30000L);
    curl_easy_setopt(curl_, CURLOPT_PATH_AS_IS, 1L);
    if (ca_file.empty()) {
        curl_easy_setopt(curl_, CURLOPT_SSL_VERIFYPEER, 0L);
        curl_easy_setopt(curl_, CURLOPT_SSL_VERIFYHOST, 0L);
    } else {
        curl_easy_setopt(curl_, CURLOPT_CAINFO, ca_file.c_str());
    }
}

TestClient::~TestClient() {
    curl_easy_cleanup(curl_);
}

void TestClient::UseBasic(const std::string& user, const std::string& password) {
    curl_easy_setopt(curl_, CURLOPT_USERNAME, user.c_str());
    curl_easy_setopt(curl_, CURLOPT_PASSWORD, password.c_str());
}

Reply TestClient::Perform(const std::string& target) {
    Reply reply;
    const std::string url = base_url_ + target;
    curl_slist* headers = curl_slist_append(nullptr, "Accept: application/json");
    for (const std::string& line : extra_headers_) {
        headers = curl_slist_append(headers, line.c_str());
    }
    if (!token_.empty()) {
        headers = curl_slist_append(headers, ("X-Auth-Token: " + token_).c_str());
    }
    curl_easy_setopt(curl_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, TakeBody);
    curl_easy_setopt(curl_, CURLOPT_WRITEDATA, &reply);
    curl_easy_setopt(curl_, CURLOPT_HEADERFUNCTION, TakeHeader);
    curl_easy_setopt(curl_, CURLOPT_HEADERDATA, &reply);
    reply.result = curl_easy_perform(curl_);
    curl_easy_getinfo(curl_, CURLINFO_RESPONSE_CODE, &reply.status);
    curl_easy_getinfo(curl_, CURLINFO_NUM_CONNECTS, &reply.new_connections);
    curl_slist_free_all(headers);
    return reply;
}

Reply TestClient::Get(const std::string& target) {
    curl_easy_setopt(curl_, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(curl_, CURLOPT_CUSTOMREQUEST, nullptr);
    return Perform(target);
}

Reply TestClient::Post(const std::string& target, const std::string& body) {
    curl_easy_setopt(curl_, CURLOPT_CUSTOMREQUEST, nullptr);
    curl_easy_setopt(curl_, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(curl_, CURLOPT_COPYPOSTFIELDS, body.c_str());
    return Perform(target);
}

Reply TestClient::Send(const std::string& method, const std::string& target) {
    curl_easy_setopt(curl_, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(curl_, CURLOPT_CUSTOMREQUEST, method.c_str());
    return Perform(target);
}

Reply TestClient::LogIn(const std::string& user, const std::string& password) {
    Reply reply =
        Post(kSessions, "{\"UserName\":\"" + user + "\",\"Password\":\"" + password + "\"}");
    if (reply.status == 201) token_ = reply.Header("x-auth-token");
    return reply;
}

simulators::BmcOptions ShippedScenario(const std::string& folder) {
    simulators::BmcOptions options;
    options.scenario_dir = folder;
    return options;
}

int CountOf(const std::string& part, const std::string& text) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

}  // namespace simulator_test
