// A temporary folder for one test, deleted at its end. Main thread.

#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace Fenwhirl {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "fenwhirl-test-XXXXXX").string();
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        path_ = name;
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] std::string path(std::string_view name = {}) const {
        return name.empty() ? path_.string() : (path_ / name).string();
    }

    std::string write(std::string_view name, std::string_view text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }

    // Writes an executable shell script and returns its path.
    std::string writeScript(std::string_view name, std::string_view body) const {
        std::string file = write(name, "#!/bin/sh\n" + std::string(body) + "\n");
        std::filesystem::permissions(file, std::filesystem::perms(0755));
        return file;
    }

    [[nodiscard]] std::string read(std::string_view name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path path_;
};

} // namespace Fenwhirl
