#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "host/setup/SetupInspection.h"

namespace tvn2x {

/// What neighbouring lines of a setup file may have in common.
enum class Fault
{
    none,
    misplaced,
    noValue,
    repeated,
    early,
    unknown,
    flag,
    position
};

/// The remarks on a setup file as they come up. A file in which everything is doubtful must not fill pages:
/// neighbouring lines with one fault share a remark where they are more than three, and beyond a thousand remarks the
/// doubts are only counted.
class RemarkList
{
public:
    void Add(SetupRemark remark);
    void Doubt(int32_t line, std::wstring text) { Add({line, std::move(text)}); }
    void Refuse(int32_t line, std::wstring text) { Add({line, std::move(text), true}); }
    /// A doubt about one of the lines that have a fault. Fault::none is shared by none.
    void DoubtLine(Fault fault, int32_t line, std::wstring text);

    /// Hands the remarks over, by line.
    void MoveInto(SetupInspection& inspection);

private:
    std::vector<SetupRemark> remarks_;
    size_t leftOut_ = 0;

    /// The neighbouring lines with one fault that the last remarks are about.
    Fault fault_ = Fault::none;
    int32_t lastLine_ = 0;
    int32_t lines_ = 0;
    size_t first_ = 0;   ///< the position of their first remark
    std::wstring text_;  ///< and its text
};

}  // namespace tvn2x
