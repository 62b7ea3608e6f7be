#pragma once
// The lines whose styling is out of date: skipped when off screen, or styled before the word lists
// changed. Sorted, disjoint half-open ranges of line numbers.

#include <utility>
#include <vector>

class StaleLines {
public:
    using Range = std::pair<int, int>;  // [first, last)

    bool empty() const { return ranges_.empty(); }
    const std::vector<Range>& ranges() const { return ranges_; }
    void clear() { ranges_.clear(); }

    void add(int first, int last);
    void remove(int first, int last);
    // The stale lines inside [first, last), in order.
    std::vector<Range> within(int first, int last) const;
    bool contains(int line) const;

private:
    void normalise();
    std::vector<Range> ranges_;
};
