#include "core/PathList.h"

#include "core/Text.h"

#include <algorithm>

namespace plinket3 {

std::string JoinPaths(const std::vector<std::string>& paths) {
    if (paths.size() == 1)
        return paths.front();
    std::string text;
    for (const std::string& path : paths)
        text.append(text.empty() ? "\"" : " \"").append(path).append("\"");
    return text;
}

const std::string* FirstNotJoinable(const std::vector<std::string>& paths) {
    const auto found =
        std::ranges::find_if(paths, [](const std::string& path) { return path.find('"') != std::string::npos; });
    return paths.size() > 1 && found != paths.end() ? &*found : nullptr;
}

std::vector<std::string> SplitPaths(std::string_view text) {
    std::vector<std::string> paths;
    std::string_view rest = text;
    while (rest.starts_with('"')) {
        const std::size_t end = rest.find('"', 1);
        if (end == std::string_view::npos)
            break;
        paths.emplace_back(rest.substr(1, end - 1));
        rest = TrimLeft(rest.substr(end + 1));
    }
    if (rest.empty() && paths.size() > 1)
        return paths;
    return text.empty() ? std::vector<std::string>() : std::vector{std::string(text)};
}

} // namespace plinket3
