// Dump files live under one fixed path. A test that needs it makes what is missing and takes it away again.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace OrvantaNS::testing {

/// Stands for one dump file while it lives. What stood there before is left alone: the test is then skipped, as it is
/// where the folder cannot be made.
class SharedFile {
public:
    explicit SharedFile(const std::string& name) : path_(std::filesystem::path("/Users/Shared") / name) {
        std::error_code error;
        if (std::filesystem::exists(path_, error)) {
            return;
        }
        madeUsers_ = std::filesystem::create_directory("/Users", error);
        madeShared_ = std::filesystem::create_directory("/Users/Shared", error);
        usable_ = static_cast<bool>(std::ofstream(path_)); // leaves an empty file, which a dump must replace
    }
    ~SharedFile() {
        std::error_code error;
        if (usable_) {
            std::filesystem::remove(path_, error);
        }
        if (madeShared_) {
            std::filesystem::remove("/Users/Shared", error);
        }
        if (madeUsers_) {
            std::filesystem::remove("/Users", error);
        }
    }
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;

    bool usable() const { return usable_; }

    void write(const std::string& text) const { std::ofstream(path_) << text; }

    /// The file's text; nothing when there is no such file.
    std::optional<std::string> text() const {
        std::ifstream in(path_, std::ios::binary);
        if (!in) {
            return std::nullopt;
        }
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    void remove() const { std::filesystem::remove(path_); }

private:
    std::filesystem::path path_;
    bool madeUsers_ = false;
    bool madeShared_ = false;
    bool usable_ = false;
};

} // namespace OrvantaNS::testing
