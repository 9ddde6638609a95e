#include "mount_nfs/program/Options.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace harbrix::nfs {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

template <typename Number>
bool readNumber(std::string_view text, Number least, Number most, Number& into) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < least || value > most)
        return false;
    into = value;
    return true;
}

bool setVersion(std::string_view value, Options& options) {
    if (value == "4") {
        options.minorVersion.reset();
    } else if (value == "4.0") {
        options.minorVersion = 0;
    } else if (value == "4.1" || value == "4.2") { // nothing of 4.2 is needed
        options.minorVersion = 1;
    } else {
        return false;
    }
    return true;
}

bool isMountFlag(std::string_view name) {
    static constexpr std::array flags{"nosuid",     "nodev",    "noexec", "noatime",
                                      "nodiratime", "relatime", "exec",   "atime"};
    return std::find(flags.begin(), flags.end(), name) != flags.end();
}

bool isImplied(std::string_view name) {
    static constexpr std::array implied{"tcp",  "rw",     "hard",  "soft",
                                        "intr", "nointr", "async", "noac"};
    return std::find(implied.begin(), implied.end(), name) != implied.end();
}

/// One option of -o; false if it is unknown or its value is wrong.
bool applyValue(std::string_view name, std::string_view value, Options& options) {
    constexpr std::uint32_t leastSize = 4096, mostSize = 1 << 20;
    if (name == "vers" || name == "nfsvers")
        return setVersion(value, options);
    if (name == "proto")
        return value == "tcp" || value == "tcp6";
    if (name == "sec")
        return value == "sys";
    if (name == "port")
        return readNumber<std::uint16_t>(value, 1, 65535, options.port);
    if (name == "rsize")
        return readNumber(value, leastSize, mostSize, options.readSize);
    if (name == "wsize")
        return readNumber(value, leastSize, mostSize, options.writeSize);
    if (name == "client") {
        options.ownClient = value == "own";
        return value == "own" || value == "any";
    }
    std::size_t mebibytes = 0;
    if (name == "memory" && readNumber<std::size_t>(value, 8, 4096, mebibytes)) {
        options.memory = mebibytes << 20;
        return true;
    }
    return false;
}

bool applyFlag(std::string_view name, Options& options) {
    if (name == "ro")
        options.readOnly = true;
    else if (name == "resvport")
        options.reservedPort = true;
    else if (name == "noresvport")
        options.reservedPort = false;
    else if (name == "sync")
        options.synchronous = true;
    else if (name == "own")
        options.ownFiles = true;
    else if (name == "allow_other")
        options.allowOther = true;
    else if (isMountFlag(name))
        options.mountFlags.emplace_back(name);
    else
        return isImplied(name);
    return true;
}

bool isForKernel(std::string_view name) {
    return name != "client" && name != "memory" && name != "own" && name != "allow_other";
}

std::string applyList(std::string_view list, Options& options) {
    for (const std::string_view item : split(list, ',')) {
        if (item.empty())
            continue;
        const std::size_t equals = item.find('=');
        const std::string_view name = item.substr(0, equals);
        const bool known = equals == std::string_view::npos
                               ? applyFlag(name, options)
                               : applyValue(name, item.substr(equals + 1), options);
        if (!known)
            return "option \"" + std::string(item) + "\" is not supported";
        if (isForKernel(name))
            options.kernelOptions += (options.kernelOptions.empty() ? "" : ",") + std::string(item);
    }
    return {};
}

} // namespace

std::expected<Remote, std::string> parseRemote(std::string_view text) {
    Remote remote;
    std::string_view host, path;
    if (text.starts_with('[')) {
        const std::size_t close = text.find("]:");
        if (close == std::string_view::npos)
            return std::unexpected("\"" + std::string(text) + "\" is not of the form host:/path");
        host = text.substr(1, close - 1);
        path = text.substr(close + 2);
    } else {
        // An IPv6 address without brackets has colons of its own, but none before a slash.
        std::size_t colon = text.find(":/");
        if (colon == std::string_view::npos)
            colon = text.rfind(':');
        if (colon == std::string_view::npos)
            return std::unexpected("\"" + std::string(text) + "\" is not of the form host:/path");
        host = text.substr(0, colon);
        path = text.substr(colon + 1);
    }
    if (host.empty() || path.empty())
        return std::unexpected("\"" + std::string(text) + "\" is not of the form host:/path");
    remote.host = host;
    for (const std::string_view component : split(path, '/')) {
        if (component.empty() || component == ".")
            continue;
        if (component == "..")
            return std::unexpected("the path must not go upwards (\"..\")");
        if (component.size() > 255)
            return std::unexpected("a part of the path is longer than 255 bytes");
        remote.path.emplace_back(component);
    }
    if (remote.path.size() > 12) // with more the look-up would not fit into one request
        return std::unexpected("the path has more than 12 parts");
    remote.source = text;
    return remote;
}

std::expected<Options, std::string> parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    std::vector<std::string> operands;
    bool onlyOperands = false;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        if (onlyOperands || argument.size() < 2 || argument[0] != '-') {
            operands.push_back(argument);
            continue;
        }
        if (argument == "--") {
            onlyOperands = true;
            continue;
        }
        if (!argument.starts_with("-o"))
            return std::unexpected("unknown option " + argument);
        if (argument == "-o" && index + 1 == arguments.size())
            return std::unexpected("-o needs a list of options");
        const std::string list = argument == "-o" ? arguments[++index] : argument.substr(2);
        if (std::string error = applyList(list, options); !error.empty())
            return std::unexpected(std::move(error));
    }
    if (operands.size() != 2)
        return std::unexpected("two operands are needed: host:/path and the mount point");
    auto remote = parseRemote(operands[0]);
    if (!remote)
        return std::unexpected(remote.error());
    options.remote = std::move(*remote);
    options.mountPoint = operands[1];
    return options;
}

} // namespace harbrix::nfs
