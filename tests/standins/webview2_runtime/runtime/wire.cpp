#include "wire.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t length_bytes = 4;

} // namespace

MessageWriter::MessageWriter(FromProgram kind) : bytes_(length_bytes, '\0') {
    bytes_ += static_cast<char>(kind);
}

MessageWriter& MessageWriter::number(std::int64_t value) {
    const auto low = static_cast<std::uint32_t>(value);
    bytes_.append(reinterpret_cast<const char*>(&low), sizeof(low));
    return *this;
}

MessageWriter& MessageWriter::text(std::wstring_view value) {
    const std::size_t size = value.size() * sizeof(wchar_t);
    number(static_cast<std::int64_t>(size));
    bytes_.append(reinterpret_cast<const char*>(value.data()), size);
    return *this;
}

std::string_view MessageWriter::finish() {
    const auto length = static_cast<std::uint32_t>(bytes_.size() - length_bytes);
    std::memcpy(bytes_.data(), &length, length_bytes);
    return bytes_;
}

MessageReader::MessageReader(std::string bytes) : bytes_(std::move(bytes)) {
    if (bytes_.empty()) {
        bytes_.resize(1);
    }
}

FromBridge MessageReader::kind() const {
    return static_cast<FromBridge>(bytes_[0]);
}

std::int32_t MessageReader::number() {
    std::int32_t value = 0;
    if (bytes_.size() - position_ >= sizeof(value)) {
        std::memcpy(&value, bytes_.data() + position_, sizeof(value));
        position_ += sizeof(value);
    }
    return value;
}

std::wstring MessageReader::text() {
    const auto size = static_cast<std::uint32_t>(number());
    const std::size_t taken = std::min<std::size_t>(size, bytes_.size() - position_);
    std::wstring value(taken / sizeof(wchar_t), L'\0');
    std::memcpy(value.data(), bytes_.data() + position_, value.size() * sizeof(wchar_t));
    position_ += taken;
    return value;
}

std::string_view MessageReader::rest() const {
    return std::string_view(bytes_).substr(position_);
}
