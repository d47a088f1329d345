// Builds devices as a system that lists them by calls tells them:
// APresentDevice("PCI", "VEN_1D0F&DEV_1001").Class("020000").Driver("fakenet", "1.2.3.4")
#pragma once

#include <cstdint>
#include <string>

#include "platform/local/present_devices.h"

namespace test_support {

class APresentDevice {
  public:
    APresentDevice(const std::string& bus, const std::string& ids) : bus_(bus), ids_(ids) {
        device_.instance_id = bus + "\\" + ids + "\\3&FAKE&0&00";
        device_.hardware_ids = {bus + "\\" + ids};
    }

    /// Six hexadecimal digits.
    APresentDevice& Class(const std::string& code) {
        device_.hardware_ids.push_back(bus_ + "\\" + ids_ + "&CC_" + code);
        return *this;
    }
    APresentDevice& Driver(const std::string& service, const std::string& version) {
        device_.service = service;
        device_.driver_key = "{fake}\\0001";
        device_.driver_version = version;
        return *this;
    }
    APresentDevice& Package(const std::string& provider, const std::string& package) {
        device_.driver_provider = provider;
        device_.driver_package = package;
        return *this;
    }
    APresentDevice& Called(const std::string& description, const std::string& maker = "") {
        device_.description = description;
        device_.manufacturer = maker;
        return *this;
    }
    APresentDevice& At(std::uint32_t bus, std::uint32_t device, std::uint32_t function) {
        device_.bus = bus;
        device_.place = device << 16U | function;
        return *this;
    }
    APresentDevice& Location(const std::string& path) {
        device_.location_paths = {path, "ACPI(_SB_)#ACPI(PC00)#ACPI(FAKE)"};
        return *this;
    }
    APresentDevice& Slot(std::uint32_t number) {
        device_.slot = number;
        return *this;
    }
    APresentDevice& Problem(std::uint32_t code) {
        device_.problem = code;
        return *this;
    }
    APresentDevice& ClassName(const std::string& name) {
        device_.class_name = name;
        return *this;
    }
    APresentDevice& Firmware(const std::string& version) {
        device_.firmware_version = version;
        return *this;
    }

    operator Vantix::local::PresentDevice() const {  // NOLINT: a builder stands for what it builds
        return device_;
    }

  private:
    std::string bus_;
    std::string ids_;
    Vantix::local::PresentDevice device_;
};

}  // namespace test_support
