#pragma once

#include <string>

#include "util/RaisedError.h"

namespace tvn2x {

/// A network model that cannot be used. The description reads "net.ini:17: what is wrong; what is allowed".
class ModelError : public RaisedError
{
public:
    /// line: counted from 1; 0 where the fault belongs to no line. An empty file stands for a value set by a program.
    ModelError(const std::wstring& modelFile, int modelLine, const std::wstring& text)
        : RaisedError(error::invalidPropertyValue, L"XKTR2x.NetworkModel", Place(modelFile, modelLine) + text),
          file(modelFile),
          line(modelLine)
    {
    }

    std::wstring file;
    int line;

private:
    static std::wstring Place(const std::wstring& modelFile, int modelLine)
    {
        if (modelFile.empty()) {
            return {};
        }
        return modelFile + (modelLine > 0 ? L":" + std::to_wstring(modelLine) : L"") + L": ";
    }
};

}  // namespace tvn2x
