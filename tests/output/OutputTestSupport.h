#pragma once

#include "tests/support/TemporaryDirectory.h"

#include <iostream>
#include <locale>
#include <sstream>
#include <string>

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
