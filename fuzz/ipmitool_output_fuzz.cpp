// Any bytes as what ipmitool says on either stream: split, parsed and classified without a crash.
// Texts that reach a message or the report are clean.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "transport/ipmi/device_id.h"
#include "transport/ipmi/fru_locator.h"
#include "transport/ipmi/fru_requests.h"
#include "transport/ipmi/hpm_components.h"
#include "transport/ipmi/ipmi_problem.h"
#include "transport/ipmi/raw_answer.h"
#include "transport/ipmi/raw_ipmi.h"
#include "transport/ipmi/sdr_locators.h"

namespace {

using namespace Vantix::transport;  // NOLINT: the harness is about nothing else

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

void ReadAs(const RawAnswer& answer) {
    if (const auto device = ParseDeviceId(answer)) RequireClean(FirmwareVersionText(*device));
    RequireClean(ParseHpmDescription(answer));
    if (const auto revision = ParseHpmRevision(answer)) RequireClean(revision->version);
    if (ParseHpmComponents(answer).size() > 8) std::abort();
    Bytes image;
    AppendFruBytes({answer, answer}, false, image);
    AppendFruBytes({answer}, true, image);
    static_cast<void>(ParseFruSize(answer));
}

/// The bytes as what a controller answers, twenty at a time; at their end it falls silent.
void ReadAsRepository(const Bytes& bytes) {
    std::size_t at = 0;
    const std::string text = ReadFruLocatorText([&](const RawRequest&) {
        const std::size_t end = std::min(at + 20, bytes.size());
        RawAnswer answer;
        if (at < end) {
            answer.completion = bytes[at] == 0xc5 ? 0xc5 : kCompletionOk;
            answer.data.assign(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                               bytes.begin() + static_cast<std::ptrdiff_t>(end));
        }
        at = end;
        return answer;
    });
    for (const FruLocator& locator : ParseFruLocators(text)) RequireClean(locator.name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<RawRequest> requests = {GetDeviceIdRequest(), FruSizeRequest(0),
                                              HpmCapabilitiesRequest(), HpmRevisionRequest(1)};
    const auto texts = SplitAnswers(text, requests.size());
    const auto answers = ReadRawAnswers(requests, texts, text);
    if (answers.size() != requests.size()) std::abort();
    for (const RawAnswer& answer : answers) ReadAs(answer);
    ReadAs({kCompletionOk, Bytes(data, data + size)});
    static_cast<void>(ParseRawBytes(text));
    RequireClean(ClassifyIpmiErrors(text).text);
    for (const FruLocator& locator : ParseFruLocators(text)) RequireClean(locator.name);
    ReadAsRepository(Bytes(data, data + size));
    const RawAnswer answer = AnswerBehindCode(kCompletionOk, Bytes(data, data + size), size / 2);
    if (answer.data.size() > size / 2) std::abort();
    return 0;
}
