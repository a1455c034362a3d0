#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>

// A directory of its own for each test, removed at the end.
class TemporaryDirectory
{
public:
    TemporaryDirectory()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "quor2d_XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary directory");
        directory = pattern;
    }
    ~TemporaryDirectory()
    {
        std::error_code error;
        std::filesystem::remove_all(directory, error);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path(const std::string& name) const { return (directory / name).string(); }
    std::string path() const { return directory.string(); }

private:
    std::filesystem::path directory;
};

// Collects what goes to standard output, and restores the state of the stream afterwards.
class CapturedOutput
{
public:
    CapturedOutput() : pSaved(std::cout.rdbuf(captured.rdbuf())) { savedFormat.copyfmt(std::cout); }
    ~CapturedOutput()
    {
        std::cout.rdbuf(pSaved);
        std::cout.copyfmt(savedFormat);
    }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    // What came since the last call.
    std::string take()
    {
        std::string text = captured.str();
        captured.str("");
        return text;
    }

private:
    std::ostringstream captured;
    std::streambuf* pSaved;
    std::ios savedFormat{nullptr};
};

// Makes 1234.5 read "1.234,5" for every stream made meanwhile.
class CommaLocale
{
public:
    CommaLocale() : saved(std::locale::global(std::locale(std::locale::classic(), new Comma))) {}
    ~CommaLocale() { std::locale::global(saved); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale saved;
};

inline std::string readFile(const std::string& filename)
{
    std::ifstream file(filename, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}
