#include <iterator>

#include "Calcul/pCalculN/Loi.h"
#include "interface/kv.h"

// What kv.h says of the library itself.

const char* kv_version() { return KV_VERSION; }
int32_t kv_interface() { return KV_INTERFACE; }
int32_t kv_year() { return kv::anneeDesRevenus; }

const char* kv_status_text(kv_status status) {
    static constexpr const char* textes[] = {"no failure",
                                             "a pointer that is needed is null",
                                             "the size of the structure is not one of this interface",
                                             "nothing has this name or number",
                                             "the box has no such amount",
                                             "the value is none that can stand here",
                                             "the return has not been computed yet",
                                             "not everything fits in the room given",
                                             "memory is short",
                                             "a fault of the library",
                                             "the computation was cancelled"};
    static_assert(std::size(textes) == KV_CANCELLED + 1);
    return status >= 0 && status <= KV_CANCELLED ? textes[status] : "unknown status";
}
