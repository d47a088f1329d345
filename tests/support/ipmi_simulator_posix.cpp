#include "support/ipmi_simulator_posix.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test_support {
namespace {

constexpr const char* kSimulator = "/usr/bin/ipmi_sim";
constexpr const char* kClient = "/usr/bin/ipmitool";
constexpr int kPortsToTry = 5;
constexpr int kPingsToTry = 100;
constexpr int kPingWaitMs = 50;

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int BoundPort(int socket) {
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof(address);
    if (bind(socket, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no port of the loopback address is free");
    }
    return ntohs(address.sin_port);
}

int FreePort(int socket_type) {
    const int probe = socket(AF_INET, socket_type, 0);
    const int port = BoundPort(probe);
    close(probe);
    return port;
}

// The simulator shares a port with another one without a word and steals its packets.
int OwnersOf(int port) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), ":%04X ", static_cast<unsigned>(port));
    std::ifstream table("/proc/net/udp");
    int owners = 0;
    for (std::string line; std::getline(table, line);) {
        const std::size_t at = line.find(text.data());
        if (at != std::string::npos && at < line.find("00000000:0000")) ++owners;
    }
    return owners;
}

/// RMCP presence ping (ASF 2.0).
bool AnswersPing(int port) {
    constexpr std::array<unsigned char, 12> kPing = {0x06, 0x00, 0xff, 0x06, 0x00, 0x00,
                                                     0x11, 0xbe, 0x80, 0x00, 0x00, 0x00};
    const int asker = socket(AF_INET, SOCK_DGRAM, 0);
    const sockaddr_in address = Loopback(port);
    sendto(asker, kPing.data(), kPing.size(), 0, reinterpret_cast<const sockaddr*>(&address),
           sizeof(address));
    pollfd watched{asker, POLLIN, 0};
    std::array<char, 64> answer{};
    const bool is_answered =
        poll(&watched, 1, kPingWaitMs) > 0 && recv(asker, answer.data(), answer.size(), 0) > 0;
    close(asker);
    return is_answered;
}

std::string LanText(int port, int system_port) {
    std::ostringstream text;
    text << "name \"module\"\nset_working_mc 0x20\n  startlan 1\n    addr 127.0.0.1 " << port
         << "\n    priv_limit admin\n"
            "    allowed_auths_callback none md2 md5 straight\n"
            "    allowed_auths_user none md2 md5 straight\n"
            "    allowed_auths_operator none md2 md5 straight\n"
            "    allowed_auths_admin none md2 md5 straight\n"
            "    guid a123456789abcdefa123456789abcdef\n  endlan\n"
         << "  user 2 true \"" << kIpmiUser << "\" \"" << kIpmiPassword << "\" admin 10\n"
         << "  user 3 true \"guest\" \"\" admin 10\n"
         << "  user 4 false \"off\" \"off-pass\" admin 10\n";
    if (system_port != 0) text << "  serial 15 127.0.0.1 " << system_port << " codec VM\n";
    return text.str();
}

/// A FRU locator record: logical device `number` of this controller, entity "power supply".
std::string LocatorLine(int number, const std::string& name) {
    std::ostringstream line;
    line << "main_sdr_add 0x20 0x" << std::hex << number - 1 << " 0x00 0x51 0x11 0x"
         << 11 + name.size() << " 0x20 0x" << number << " 0x80 0x00 0x00 0x10 0x00 0x0a 0x"
         << number << " 0x00 0x" << (0xc0 | name.size());
    for (const char letter : name) line << " 0x" << static_cast<int>(letter);
    return line.str() + "\n";
}

std::string ModuleText(const TemporaryFolder& folder, const SimulatedModule& module) {
    const auto fru_line = [&](int number, AFru::Bytes image) {
        image.resize(256);
        const std::string name = "fru" + std::to_string(number) + ".bin";
        folder.Write(name, std::string(image.begin(), image.end()));
        return "mc_add_fru_data 0x20 " + std::to_string(number) + " 0x100 file 0 \"" +
               folder.Path(name) + "\"\n";
    };
    std::string text =
        "mc_setbmc 0x20\n"
        "mc_add 0x20 0x20 no-device-sdrs 0x01 9 8 0x9f 0x00fffe 0x0f02\n"
        "sel_enable 0x20 1000 0x0a\n" +
        fru_line(0, module.fru);
    int number = 0;
    for (const SimulatedSupply& supply : module.supplies) {
        text += fru_line(++number, supply.fru);
        text += LocatorLine(number, supply.name);
    }
    return text + "mc_enable 0x20\n";
}

}  // namespace

SimulatedModule AModule() {
    SimulatedModule module;
    module.fru = AFru()
                     .Chassis({"EX-CH-DE200", "EXCH0001"})
                     .Board({"Example", "EX-DE-BOARD", "EXBD0001", "EX-BP-1"})
                     .Product({"Example", "Example DE200", "EX-PN-DE200", "1.02", "EX DE 0001"})
                     .Image();
    module.supplies = {
        {"PSU1",
         AFru().Product({"Example", "EX-PSU-2000", "EX-PN-PSU20", "2.05", "EXPS1"}).Image()},
        {"PSU2",
         AFru().Product({"Example", "EX-PSU-2000", "EX-PN-PSU20", "2.06", "EXPS2"}).Image()},
    };
    return module;
}

std::string IpmiSimulator::Missing() {
    if (!std::filesystem::exists(kSimulator)) return "ipmi_sim (package openipmi) is not installed";
    if (!std::filesystem::exists(kClient)) return "ipmitool is not installed";
    return {};
}

IpmiSimulator::IpmiSimulator(const SimulatedModule& module, SystemInterface system_interface) {
    const std::string module_file = folder_.Write("bmc.emu", ModuleText(folder_, module));
    for (int n = 0; n < kPortsToTry; ++n) {
        port_ = FreePort(SOCK_DGRAM);
        if (system_interface == SystemInterface::kSocket) system_port_ = FreePort(SOCK_STREAM);
        if (Start(folder_.Write("lan.conf", LanText(port_, system_port_)), module_file)) return;
    }
    throw std::runtime_error("ipmi_sim did not start: " + process_->Output() + process_->Errors());
}

bool IpmiSimulator::Start(const std::string& lan_file, const std::string& module_file) {
    const std::string state = folder_.Path("state" + std::to_string(port_));
    std::filesystem::create_directories(state);
    ChildSetup setup;
    setup.arguments = {kSimulator, "-c", lan_file, "-f", module_file, "-s", state, "-n"};
    setup.environment = {{"PATH", "/usr/bin:/bin"}};
    setup.folder = folder_.Path("");
    process_ = std::make_unique<ChildProcess>(setup);
    for (int n = 0; n < kPingsToTry; ++n) {
        if (AnswersPing(port_)) return OwnersOf(port_) == 1;
    }
    return false;
}

SilentUdpPort::SilentUdpPort() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    port_ = BoundPort(socket_);
}

SilentUdpPort::~SilentUdpPort() {
    close(socket_);
}

}  // namespace test_support
