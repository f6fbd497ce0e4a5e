#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "xml/xml_node.h"
#include "xml/xml_settings.h"

/// Every test begins with the initial settings and leaves them behind.
class XmlTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    static void use_encoding(XmlEncoding encoding);
};

/// A folder of one's own, removed with all it holds.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string path(const std::string& name) const { return (folder / name).string(); }
    /// The path of a new file that holds `content`.
    std::string file(const std::string& name, std::string_view content) const;
    std::size_t count_entries() const;

private:
    std::filesystem::path folder;
};

std::string read_bytes(const std::string& path);

/// A tree on one line: name[attribute=value ...](contents), ?name for a declaration, #root for an unnamed
/// node, "text", and clear sections between their tags. "empty" for the empty node.
std::string describe(const XmlNode& node);

/// describe() of a parsed text, with any code.
std::string tree(const char* text, const char* first_tag = nullptr);

/// "none" for no error and no place, else "CODE at LINE:COLUMN".
std::string outcome(const XmlResults& results);
std::string fault(const char* text, const char* first_tag = nullptr);
