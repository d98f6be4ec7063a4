#include "core/strarray.h"

#include <algorithm>

#include "core/errnums.h"
#include "core/error.h"
#include "core/utf8.h"

namespace core {

std::size_t StrArray::Offset(long index) const {
    if (!IsDim() || index < lower_ || index > Upper()) throw ErrorNumber(errnum::kSubscript, "subscript out of range");
    return static_cast<std::size_t>(index - lower_);
}

std::string& StrArray::operator[](long index) { return items_[Offset(index)]; }

const std::string& StrArray::operator[](long index) const { return items_[Offset(index)]; }

const std::string& StrArray::Item(long index, const std::string& otherwise) const {
    return IsDim() && index >= lower_ && index <= Upper() ? (*this)[index] : otherwise;
}

void StrArray::ReDim(long upper) { items_.resize(static_cast<std::size_t>(std::max(0L, upper - lower_ + 1))); }

long ArrFind(const StrArray& array, std::string_view value, long from, Case mode) {
    for (long i = from < 0 ? array.Lower() : std::max(from, array.Lower()); i <= array.Upper(); ++i)
        if (fEquals(array[i], value, mode)) return i;
    return -1;
}

ArrAdded ArrAdd(StrArray& array, long index, std::string_view value, int mode, bool reuseEmptyFirst) {
    if (!array.IsDim()) array = StrArray(0, {""});
    if (mode == 1 || mode == 2) {
        const long found = ArrFind(array, value, -1, mode == 1 ? Case::Exact : Case::Ignore);
        if (found >= 0) return {found, false};
    }
    if (index < 0) {
        const bool loneBlank = array.Lower() == 0 && array.Upper() == 0 && fTrim(array[0]).empty();
        index = reuseEmptyFirst && loneBlank ? 0 : array.Upper() + 1;
    }
    if (index > array.Upper()) array.ReDim(index);
    array[index] = value;
    return {index, true};
}

StrArray ArrCopyRange(const StrArray& array, long start, long count) {
    if (!array.IsDim() || count <= 0) return {};
    const long first = std::max(start, array.Lower());
    const long last = start > array.Upper() ? array.Upper() : start + std::min(count - 1, array.Upper() - start);
    std::vector<std::string> window;
    for (long i = first; i <= last; ++i) window.push_back(array[i]);
    return {array.Lower(), std::move(window)};
}

}  // namespace core
