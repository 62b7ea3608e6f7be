#include "document/StaleLines.h"

#include <algorithm>

void StaleLines::normalise() {
    std::sort(ranges_.begin(), ranges_.end());
    std::vector<Range> merged;
    for (const Range& r : ranges_) {
        if (r.first >= r.second)
            continue;
        if (!merged.empty() && r.first <= merged.back().second)
            merged.back().second = std::max(merged.back().second, r.second);
        else
            merged.push_back(r);
    }
    ranges_ = std::move(merged);
}

void StaleLines::add(int first, int last) {
    if (first >= last)
        return;
    ranges_.emplace_back(first, last);
    normalise();
}

void StaleLines::remove(int first, int last) {
    if (first >= last || ranges_.empty())
        return;
    std::vector<Range> kept;
    for (const Range& r : ranges_) {
        if (r.second <= first || r.first >= last) {
            kept.push_back(r);
            continue;
        }
        if (r.first < first)
            kept.emplace_back(r.first, first);
        if (r.second > last)
            kept.emplace_back(last, r.second);
    }
    ranges_ = std::move(kept);
}

std::vector<StaleLines::Range> StaleLines::within(int first, int last) const {
    std::vector<Range> out;
    for (const Range& r : ranges_) {
        const int a = std::max(r.first, first), b = std::min(r.second, last);
        if (a < b)
            out.emplace_back(a, b);
    }
    return out;
}

bool StaleLines::contains(int line) const {
    return std::any_of(ranges_.begin(), ranges_.end(),
                       [line](const Range& r) { return line >= r.first && line < r.second; });
}
