// The interpreter's collector, kept from starting.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Lets no collection start by itself for a scope, in which pygame's own functions run: they look
/// up a display's surface before they make their first object, where the collector could run code
/// of the host that closes or replaces the display.
///
/// Writes the threshold of the youngest objects as gc.set_threshold() does, 0 for never, without
/// the calls; a threshold that code of the host sets meanwhile stays.
class CollectionPause {
 public:
    CollectionPause() noexcept : threshold_(youngest().threshold) { youngest().threshold = 0; }
    CollectionPause(const CollectionPause&) = delete;
    CollectionPause& operator=(const CollectionPause&) = delete;
    ~CollectionPause() {
        if (youngest().threshold == 0) {
            youngest().threshold = threshold_;
        }
    }

 private:
    // As every release of 2.7 lays out what it knows of objects of one age.
    struct Generation {
        PyGC_Head head;
        int threshold;  // of new objects, less dropped ones, above which a collection starts
        int count;
    };

    static Generation& youngest() noexcept {
        return *reinterpret_cast<Generation*>(_PyGC_generation0);
    }

    int threshold_;
};

}  // namespace larkspur
