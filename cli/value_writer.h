// Writing numbers and text to a stream, optionally broken into lines.
#pragma once

#include <cstdio>
#include <string>

#include "bigint/bigint.h"

class ValueWriter {
public:
    // wrap: characters per line of a value, 0 for no breaks.
    ValueWriter(std::FILE* out, int wrap) : out_(out), wrap_(wrap) {}

    // A value: the numerator's digits and, when the denominator is not one,
    // "/" and the denominator as stored; then a line end. Breaks lines when
    // wrapping.
    void Value(const BigInt* numerator, const BigInt* denominator);
    // The same without line breaks or a line end, for files.
    static void Digits(std::FILE* out, const BigInt* numerator, const BigInt* denominator);
    // Text as it is; "\r\n" becomes "\n".
    void Text(const std::string& text);
    void Line(const std::string& text) { Text(text + "\n"); }

private:
    void Wrapped(const char* text, size_t length);

    std::FILE* out_;
    int wrap_;
    int column_ = 0;
};
