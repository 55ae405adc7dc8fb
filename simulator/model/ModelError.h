#pragma once

#include <string>

#include "util/RaisedError.h"

namespace tvn2x {

/// A network model that cannot be used. The description reads "net.ini:17: what is wrong; what is allowed".
class ModelError : public RaisedError
{
public:
    /// line: counted from 1; 0 where the fault belongs to no line. An empty file stands for a value set by a program.
    ModelError(const std::wstring& file, int line, const std::wstring& text)
        : RaisedError(error::invalidPropertyValue, L"XKTR2x.NetworkModel", Place(file, line) + text)
    {
    }

private:
    static std::wstring Place(const std::wstring& file, int line)
    {
        if (file.empty()) {
            return {};
        }
        return file + (line > 0 ? L":" + std::to_wstring(line) : L"") + L": ";
    }
};

}  // namespace tvn2x
