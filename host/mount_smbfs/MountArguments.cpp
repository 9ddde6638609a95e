#include "mount_smbfs/MountArguments.h"

#include <charconv>
#include <string_view>

namespace harbrix {

namespace {

std::expected<void, std::string> applyOption(std::string_view option, MountArguments& arguments,
                                             std::optional<std::uint16_t>& port) {
    constexpr std::string_view portKey = "port=";
    if (option == "ro" || option == "rdonly") {
        arguments.access = MountAccess::readOnly;
    } else if (option == "rw") {
        arguments.access = MountAccess::readWrite;
    } else if (option.starts_with(portKey)) {
        const std::string_view text = option.substr(portKey.size());
        std::uint16_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || value == 0)
            return std::unexpected("'" + std::string(text) + "' is no port number");
        port = value;
    } else {
        return std::unexpected("unknown option '" + std::string(option) + "'");
    }
    return {};
}

std::expected<void, std::string> applyOptionList(std::string_view list, MountArguments& arguments,
                                                 std::optional<std::uint16_t>& port) {
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        if (comma != 0) {
            if (auto applied = applyOption(list.substr(0, comma), arguments, port); !applied)
                return applied;
        }
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    return {};
}

} // namespace

std::expected<MountArguments, std::string>
MountArguments::parse(const std::vector<std::string>& arguments) {
    MountArguments parsed;
    std::vector<std::string> operands;
    std::optional<std::uint16_t> port;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (optionsEnded || !argument.starts_with('-')) {
            operands.push_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "-N") {
            parsed.password = PasswordSource::none;
        } else if (argument.starts_with("-o")) {
            if (argument == "-o" && ++i == arguments.size())
                return std::unexpected("-o lacks its options");
            const std::string list = argument == "-o" ? arguments[i] : argument.substr(2);
            if (auto applied = applyOptionList(list, parsed, port); !applied)
                return std::unexpected(applied.error());
        } else {
            return std::unexpected("unknown option '" + argument + "'");
        }
    }
    if (operands.size() != 2)
        return std::unexpected("expected a share and a folder");
    auto share = ShareAddress::parse(operands[0]);
    if (!share)
        return std::unexpected(share.error());
    parsed.share = std::move(*share);
    parsed.mountPoint = operands[1];
    if (port) {
        if (parsed.share.port && parsed.share.port != port)
            return std::unexpected("two different ports are given");
        parsed.share.port = port;
    }
    return parsed;
}

} // namespace harbrix
