#include "core/Text.h"
#include "patch/PatchLines.h"
#include "patch/modPatchFiles.h"

#include <array>
#include <utility>

namespace plinket3::modPatchFiles {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> headerKeys{{{"Patch format", "patchversion"},
                                                                                   {"Doom version", "engineversion"},
                                                                                   {"Engine config", "engineconfig"},
                                                                                   {"Data WAD", "datawad"},
                                                                                   {"IWAD", "iwad"}}};

} // namespace

std::string HeaderValue(const Header& header, std::string_view name) {
    const auto found = header.find(name);
    return found == header.end() ? std::string() : found->second;
}

Status ScanHeader(std::string_view bytes, Header& header) {
    Header found;
    PatchLines lines(bytes);
    for (std::size_t number = 1; !lines.AtEnd(); ++number) {
        std::string_view line = lines.Next();
        line = line.substr(0, line.find('#'));
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            continue;
        const std::string_view key = Trim(line.substr(0, equals));
        for (const auto& [label, name] : headerKeys) {
            if (key.size() != label.size() || !EqualIgnoringCase(key, label))
                continue;
            if (!found.emplace(name, Trim(line.substr(equals + 1))).second)
                return Status::Failure("the line \"" + std::string(label) + "\" stands in it twice, again in line " +
                                       std::to_string(number));
        }
    }
    header = std::move(found);
    return {};
}

Status ScanHeader(const PatchPlace& place, Header& header) {
    std::string bytes;
    if (Status status = ReadPlace(place, bytes); !status)
        return status;
    if (Status status = ScanHeader(std::string_view(bytes), header); !status)
        return status;
    header["filename"] = place.file.string();
    return {};
}

} // namespace plinket3::modPatchFiles
