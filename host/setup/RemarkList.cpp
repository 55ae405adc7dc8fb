#include "host/setup/RemarkList.h"

#include <algorithm>
#include <utility>

namespace tvn2x {
namespace {

constexpr size_t mostRemarks = 1000;
constexpr int32_t mostSingly = 3;

}  // namespace

void RemarkList::Add(SetupRemark remark)
{
    if (remarks_.size() < (remark.isFatal ? 2 * mostRemarks : mostRemarks)) {
        remarks_.push_back(std::move(remark));
    } else {
        ++leftOut_;
    }
}

void RemarkList::DoubtLine(Fault fault, int32_t line, std::wstring text)
{
    if (fault == Fault::none || fault != fault_ || line != lastLine_ + 1) {
        fault_ = fault;
        lines_ = 0;
        first_ = remarks_.size();
        text_ = text;
    }
    lastLine_ = line;
    if (++lines_ <= mostSingly || first_ >= remarks_.size()) {
        Doubt(line, std::move(text));
        return;
    }
    remarks_.resize(first_ + 1);
    remarks_.back().text = text_ + L" (likewise the " + std::to_wstring(lines_ - 1) + L" lines behind it)";
}

void RemarkList::MoveInto(SetupInspection& inspection)
{
    std::ranges::stable_sort(remarks_, {}, &SetupRemark::line);
    inspection.remarks = std::move(remarks_);
    inspection.leftOut = leftOut_;
}

}  // namespace tvn2x
