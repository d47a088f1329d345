// Builds FRU images: AFru().Product({"Example", "DenseBox 9", "EX-9"}).Image().
#pragma once

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace test_support {

class AFru {
  public:
    using Bytes = std::vector<std::uint8_t>;

    /// Part number, serial number.
    AFru& Chassis(const std::vector<std::string>& texts) {
        chassis_ = Area({1, 0, 0x17}, texts);
        return *this;
    }
    /// Manufacturer, product name, serial number, part number.
    AFru& Board(const std::vector<std::string>& texts, std::uint8_t language = 0) {
        board_ = Area({1, 0, language, 0, 0, 0}, texts);
        return *this;
    }
    /// Manufacturer, name, part number, version, serial number.
    AFru& Product(const std::vector<std::string>& texts, std::uint8_t language = 0) {
        product_ = Area({1, 0, language}, texts);
        return *this;
    }
    /// Ready-made fields, each with its type and length byte.
    AFru& ProductFields(const Bytes& fields, std::uint8_t language = 0) {
        Bytes area = {1, 0, language};
        area.insert(area.end(), fields.begin(), fields.end());
        product_ = Closed(area);
        return *this;
    }
    AFru& PowerSupplyRecord() {
        records_ = {0x00, 0x82, 24, 0, 0};
        records_[4] = CheckByte(records_);
        records_.resize(records_.size() + 24);
        return *this;
    }

    [[nodiscard]] Bytes Image() const {
        Bytes image(8);
        image[0] = 1;
        Append(chassis_, 2, image);
        Append(board_, 3, image);
        Append(product_, 4, image);
        Append(records_, 5, image);
        image[7] = CheckByte(Bytes(image.begin(), image.begin() + 8));
        return image;
    }

    /// A field of 8-bit text.
    static Bytes TextField(const std::string& text) {
        Bytes field = {static_cast<std::uint8_t>(0xc0 | text.size())};
        field.insert(field.end(), text.begin(), text.end());
        return field;
    }
    static std::uint8_t CheckByte(const Bytes& bytes) {
        return static_cast<std::uint8_t>(0U - std::accumulate(bytes.begin(), bytes.end(), 0U));
    }

  private:
    static Bytes Area(Bytes head, const std::vector<std::string>& texts) {
        for (const auto& text : texts) {
            const Bytes field = TextField(text);
            head.insert(head.end(), field.begin(), field.end());
        }
        return Closed(head);
    }
    static Bytes Closed(Bytes area) {
        area.push_back(0xc1);
        area.resize((area.size() + 1 + 7) / 8 * 8 - 1);
        area[1] = static_cast<std::uint8_t>((area.size() + 1) / 8);
        area.push_back(CheckByte(area));
        return area;
    }
    static void Append(const Bytes& area, std::size_t place, Bytes& image) {
        if (area.empty()) return;
        image.resize((image.size() + 7) / 8 * 8);
        image[place] = static_cast<std::uint8_t>(image.size() / 8);
        image.insert(image.end(), area.begin(), area.end());
    }

    Bytes chassis_, board_, product_, records_;
};

}  // namespace test_support
