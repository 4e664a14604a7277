// SPDX-License-Identifier: Apache-2.0
#include "command/traffic_test_events.h"

namespace ventrik {

const std::array<const char*, 14> kTrafficTestEvents = {
    "EVENT htmc=11272644 loc=113 extent=1 dir=0 bidi=0 age=60 cc=11"
    " ltn=1 new=1 event_1=401 event_2=807",
    "EVENT htmc=15469228 loc=683 extent=2 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=401",
    "EVENT htmc=19662428 loc=407 extent=1 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=401",
    "EVENT htmc=23871332 loc=4057 extent=1 dir=0 bidi=0 age=60 cc=11"
    " ltn=1 new=1 event_1=401",
    "EVENT htmc=28050401 loc=248 extent=1 dir=1 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=401 event_2=807",
    "EVENT htmc=32245784 loc=518 extent=5 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=401",
    "EVENT htmc=36439208 loc=298 extent=4 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=401 event_2=1602",
    "EVENT htmc=1 loc=518 extent=1 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=126",
    "EVENT htmc=2 loc=61 extent=1 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=125",
    "EVENT htmc=3 loc=60 extent=1 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=1",
    "EVENT htmc=4 loc=59 extent=1 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=101",
    "EVENT htmc=5 loc=57 extent=1 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=401",
    "EVENT htmc=80 loc=294 extent=11 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=101 len_1=3",
    "EVENT htmc=79 loc=1025 extent=11 dir=0 bidi=0 age=15 cc=11"
    " ltn=1 new=1 event_1=105",
};

}  // namespace ventrik
