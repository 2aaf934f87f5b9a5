#include "core/PathList.h"
#include "core/Text.h"

#include "core/Paths.h"
#include "patch/PatchDocument.h"
#include "patch/PatchLines.h"
#include "patch/modPatchFiles.h"

#include <algorithm>
#include <array>
#include <utility>

namespace plinket3::modPatchFiles {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> headerKeys{{{"Patch format", "patchversion"},
                                                                                   {"Doom version", "engineversion"},
                                                                                   {"Engine config", "engineconfig"},
                                                                                   {"Data WAD", "datawad"},
                                                                                   {"IWAD", "iwad"}}};

/// What `patch` has for a header line; empty for those that say nothing of the session.
std::string SessionValue(std::string_view name, const PatchData& patch, bool version) {
    return name == "engineconfig"               ? patch.engineConfig
           : name == "datawad"                  ? JoinPaths(patch.dataWadPaths)
           : name == "iwad"                     ? patch.iwadPath
           : name == "engineversion" && version ? std::to_string(patch.doomVersion)
                                                : std::string();
}

/// Whether both name files of the same names; their folders are a matter of the machine.
bool SameFiles(std::string_view one, std::string_view other) {
    return std::ranges::equal(SplitPaths(one), SplitPaths(other),
                              [](const std::string& left, const std::string& right) {
                                  return EqualIgnoringCase(FileNameOf(left), FileNameOf(right));
                              });
}

} // namespace

std::string_view FileNameOf(std::string_view path) { return path.substr(path.find_last_of("/\\") + 1); }

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

std::optional<std::string> UpdateHeader(const PatchDocument& document, const PatchData& patch, bool version) {
    const std::string& bytes = document.Bytes();
    std::string updated;
    std::size_t done = 0;
    bool strings = false; // whose keys may be any word
    for (std::size_t i = 0; i < document.Lines().size(); ++i) {
        const DocumentLine& line = document.Lines()[i];
        if (line.what == LineKind::Header)
            strings = static_cast<Section>(line.field) == Section::Strings;
        if (line.what != LineKind::Other || strings)
            continue;
        std::string_view text = document.Text(i);
        text = text.substr(0, text.find('#'));
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos)
            continue;
        const std::string_view key = Trim(text.substr(0, equals)), old = Trim(text.substr(equals + 1));
        for (const auto& [label, name] : headerKeys) {
            const std::string now = SessionValue(name, patch, version);
            if (!EqualIgnoringCase(key, label) || SameFiles(now, old) || now.empty() || now != Trim(now) ||
                now.find_first_of("#\r\n") != std::string_view::npos)
                continue;
            const std::size_t begin = old.empty() ? equals + 1 : static_cast<std::size_t>(old.data() - text.data());
            updated.append(bytes, done, line.offset + begin - done).append(old.empty() ? " " : "").append(now);
            done = line.offset + begin + old.size();
        }
    }
    if (done == 0)
        return std::nullopt;
    return updated.append(bytes, done);
}

Status ScanHeader(const PatchPlace& place, Header& header) {
    std::string bytes;
    if (Status status = ReadPlace(place, bytes); !status)
        return status;
    if (Status status = ScanHeader(std::string_view(bytes), header); !status)
        return status;
    header["filename"] = PathText(place.file);
    return {};
}

} // namespace plinket3::modPatchFiles
