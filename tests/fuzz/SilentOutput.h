#pragma once

#include <iostream>
#include <streambuf>
#include <string>

namespace fuzz
{

/// Keeps what the library reports off the terminal and lets it be looked at.
class SilentOutput : std::streambuf
{
public:
    SilentOutput() : pSaved(std::cout.rdbuf(this)) { savedFormat.copyfmt(std::cout); }
    ~SilentOutput() override
    {
        std::cout.rdbuf(pSaved);
        std::cout.copyfmt(savedFormat);
    }

    void clear() { text.clear(); }

    /// How often a text, not an empty one, has been reported since the last call of clear().
    std::size_t count(const std::string& pattern) const
    {
        std::size_t number = 0;
        for (std::size_t at = 0; (at = text.find(pattern, at)) != std::string::npos; at += pattern.size())
            ++number;
        return number;
    }

private:
    int overflow(int c) override
    {
        if (c != traits_type::eof())
            text += traits_type::to_char_type(c);
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* pText, std::streamsize length) override
    {
        text.append(pText, static_cast<std::size_t>(length));
        return length;
    }

    std::streambuf* pSaved;
    std::ios savedFormat{nullptr};
    std::string text;
};

} // namespace fuzz
