#include "core/clsConfiguration.h"

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <limits>

namespace plinket3 {

namespace {

constexpr int deepestLevel = 100;

/// A key as a message shows it: in quotes, on one line and not too long.
std::string Quoted(std::string_view key) {
    constexpr std::size_t longest = 60;
    std::string shown(key.substr(0, longest));
    std::ranges::replace_if(
        shown, [](char character) { return static_cast<unsigned char>(character) < ' '; }, '?');
    return "\"" + shown + (key.size() > longest ? "...\"" : "\"");
}

/// Numbers written with a "." are single precision, limited to its range.
SettingValue NumberValue(std::string_view text) {
    const double value = ConfigurationNumber(text);
    if (text.find('.') == std::string_view::npos)
        return value;
    constexpr double limit = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -limit, limit));
}

using Characters = std::array<bool, 256>;

constexpr Characters Of(std::string_view characters) {
    Characters set{};
    for (const char character : characters)
        set[static_cast<unsigned char>(character)] = true;
    return set;
}
constexpr Characters endsOfKeys = Of(" \n{}=;/"), endsOfTexts = Of("\\\";"), endsOfNumbers = Of(";");

class Parser {
public:
    /// Carriage returns and tabs count nowhere.
    explicit Parser(std::string_view text) {
        text_.resize(text.size());
        char* end = text_.data();
        for (const char character : text) {
            *end = character;
            end += character != '\r' && character != '\t' ? 1 : 0; // without a branch, which would be guessed wrong
        }
        text_.resize(static_cast<std::size_t>(end - text_.data()));
    }

    Status Parse(SettingTree& root) {
        ParseBlock(root, 0);
        return status_;
    }

private:
    enum class Mode { Key, Value, Number, String };

    /// Reads up to the block's "}" or the end of the text; false after a failure. Buffers and mode are the block's own.
    bool ParseBlock(SettingTree& tree, int level) {
        std::string key;
        std::string value;
        Mode mode = Mode::Key;
        while (at_ < text_.size()) {
            const char character = text_[at_++];
            switch (mode) {
            case Mode::Key:
                switch (character) {
                case ' ':
                case '\n':
                    break;
                case '{':
                    if (!ParseStructure(tree, key, level))
                        return false;
                    break;
                case '}':
                    return true;
                case '=':
                    mode = Mode::Value;
                    break;
                case ';': // Kept: also without a key, so that "};" adds one with an empty name. docs/kept-behaviour.md
                    if (!Add(tree, key, 0.0))
                        return false;
                    value.clear();
                    break;
                case '/':
                    SkipComment();
                    break;
                default:
                    AppendUntil(key, endsOfKeys);
                }
                break;
            case Mode::Value:
                if (character == '"') {
                    mode = Mode::String;
                } else if (StartsNumber(character)) {
                    mode = Mode::Number;
                    value += character;
                }
                break;
            case Mode::Number:
                if (character != ';') {
                    AppendUntil(value, endsOfNumbers);
                    break;
                }
                if (!Add(tree, key, NumberValue(value)))
                    return false;
                value.clear();
                mode = Mode::Key;
                break;
            case Mode::String:
                if (character == '\\') {
                    AppendEscaped(value);
                } else if (character == '"') {
                    // Kept: string mode goes on up to the next ";", collecting the next value. docs/kept-behaviour.md
                    if (!Add(tree, key, std::move(value)))
                        return false;
                    value.clear();
                } else if (character == ';' && key.empty()) {
                    mode = Mode::Key;
                } else {
                    AppendUntil(value, endsOfTexts);
                }
                break;
            }
        }
        return true;
    }

    /// Appends the character that was read and those that follow, up to one that ends them.
    void AppendUntil(std::string& text, const Characters& ends) {
        const std::size_t begin = at_ - 1;
        while (at_ < text_.size() && !ends[static_cast<unsigned char>(text_[at_])])
            ++at_;
        text.append(text_, begin, at_ - begin);
    }

    static bool StartsNumber(char character) {
        return (character >= '0' && character <= '9') || character == '&' || character == '-' || character == '.' ||
               character == 'e' || character == 'E';
    }

    bool ParseStructure(SettingTree& tree, std::string& key, int level) {
        if (level == deepestLevel)
            return Fail("blocks are nested deeper than " + std::to_string(deepestLevel) + " levels");
        auto structure = std::make_shared<SettingTree>();
        return ParseBlock(*structure, level + 1) && Add(tree, key, std::move(structure));
    }

    /// Stands behind a "/", which is dropped when it starts no comment.
    void SkipComment() {
        if (at_ >= text_.size() || (text_[at_] != '/' && text_[at_] != '*'))
            return;
        const std::string_view end = text_[at_] == '/' ? "\n" : "*/";
        const std::size_t found = text_.find(end, at_ + 1);
        at_ = found == std::string::npos ? text_.size() : found + end.size();
    }

    /// Stands behind a backslash.
    void AppendEscaped(std::string& value) {
        if (at_ >= text_.size())
            return;
        const char character = text_[at_];
        if (character >= '0' && character <= '9') {
            const double code = ConfigurationNumber(std::string_view(text_).substr(at_, 3));
            value += static_cast<char>(static_cast<unsigned char>(std::min(RoundToInt32(code), 255)));
            at_ = std::min(at_ + 3, text_.size());
            return;
        }
        ++at_;
        switch (character) {
        case 'n':
            value += '\n';
            break;
        case 'r':
            value += '\r';
            break;
        case 't':
            value += '\t';
            break;
        default:
            value += character;
        }
    }

    /// Adds the entry and empties `key`; fails when the block has such a key already.
    bool Add(SettingTree& tree, std::string& key, SettingValue value) {
        if (!tree.Add(key, std::move(value)))
            return Fail("key " + Quoted(key) + " occurs twice in one block");
        key.clear();
        return true;
    }

    bool Fail(const std::string& reason) {
        status_ = Status::Failure("line " + std::to_string(LineAt(text_, at_)) + ": " + reason);
        return false;
    }

    std::string text_;
    std::size_t at_ = 0;
    Status status_;
};

class Writer {
public:
    Writer(std::string_view newLine, bool whiteSpace) : newLine_(newLine), whiteSpace_(whiteSpace) {}

    std::string Write(const SettingTree& root) {
        WriteTree(root);
        return std::move(text_);
    }

private:
    void WriteTree(const SettingTree& tree) {
        for (const auto& [key, value] : tree.Entries())
            std::visit([this, &name = key](const auto& content) { WriteEntry(name, content); }, value);
    }

    void WriteEntry(std::string_view key, double value) { WriteAssignment(key, RealText(value)); }
    void WriteEntry(std::string_view key, float value) { WriteAssignment(key, RealText(value)); }
    void WriteEntry(std::string_view key, std::int32_t value) { WriteAssignment(key, std::to_string(value)); }
    // Kept: both truth values are written as 0, which is why the settings are numbers. docs/kept-behaviour.md
    void WriteEntry(std::string_view key, bool) { WriteAssignment(key, "0"); }

    void WriteEntry(std::string_view key, const std::string& value) {
        std::string quoted = "\"";
        for (const char character : value) {
            switch (character) {
            case '\\':
                quoted += "\\\\";
                break;
            case '\n':
                quoted += "\\n";
                break;
            case '\r':
                quoted += "\\r";
                break;
            case '\t':
                quoted += "\\t";
                break;
            case '"':
                quoted += "\\\"";
                break;
            default:
                quoted += character;
            }
        }
        WriteAssignment(key, quoted += '"');
    }

    void WriteEntry(std::string_view key, const std::shared_ptr<SettingTree>& structure) {
        if (whiteSpace_)
            WriteLine("");
        WriteLine(key);
        WriteLine("{");
        ++level_;
        WriteTree(*structure);
        --level_;
        WriteLine("}");
        if (whiteSpace_)
            WriteLine("");
    }

    void WriteAssignment(std::string_view key, std::string_view value) {
        Indent();
        text_.append(key).append(whiteSpace_ ? " = " : "=").append(value).append(";").append(newLine_);
    }

    void WriteLine(std::string_view line) {
        Indent();
        text_.append(line).append(newLine_);
    }

    void Indent() {
        if (whiteSpace_)
            text_.append(level_, '\t');
    }

    std::string_view newLine_;
    bool whiteSpace_;
    std::size_t level_ = 0;
    std::string text_;
};

/// A structure's deep copy; any other value as it is.
SettingValue Copy(const SettingValue& value) {
    if (const auto* structure = std::get_if<std::shared_ptr<SettingTree>>(&value))
        return (*structure)->DeepCopy();
    return value;
}

} // namespace

Status clsConfiguration::LoadConfiguration(const std::filesystem::path& FileName) {
    std::string text;
    Status status = ReadWholeFile(FileName, text);
    if (status)
        status = InputConfiguration(text);
    return status ? status : Status::Failure(PathText(FileName) + ": " + status.Reason());
}

Status clsConfiguration::InputConfiguration(std::string_view Text) {
    auto root = std::make_shared<SettingTree>();
    Status status = Parser(Text).Parse(*root);
    if (status)
        root_ = std::move(root);
    return status;
}

void clsConfiguration::NewConfiguration() { root_ = std::make_shared<SettingTree>(); }

SettingValue clsConfiguration::ReadSetting(std::string_view Key, const SettingValue& Default, bool Reference) const {
    const SettingValue* value = root_->Find(Key);
    if (value == nullptr)
        return Default;
    return Reference ? *value : Copy(*value);
}

void clsConfiguration::WriteSetting(std::string_view Key, const SettingValue& Value, bool Reference) {
    // Kept: only a structure that replaces a value is copied. docs/kept-behaviour.md
    root_->Set(Key, root_->Exists(Key) && !Reference ? Copy(Value) : Value);
}

void clsConfiguration::RemoveSetting(std::string_view Key) { root_->Remove(Key); }

std::shared_ptr<SettingTree> clsConfiguration::Root(bool Reference) const {
    return Reference ? root_ : root_->DeepCopy();
}

Status clsConfiguration::SaveConfiguration(const std::filesystem::path& FileName, std::string_view NewLine,
                                           bool WhiteSpace) const {
    return WriteFileAtomically(FileName, OutputConfiguration(NewLine, WhiteSpace));
}

std::string clsConfiguration::OutputConfiguration(std::string_view NewLine, bool WhiteSpace) const {
    return Writer(NewLine, WhiteSpace).Write(*root_);
}

} // namespace plinket3
