#include "tests/support/StateStore.h"

#include "ZMModel/CDiscData.h"

#include <memory>

namespace zm::test {

void resetStateStore() {
    CDiscData* store = CDiscData::GetInstance();
    std::destroy_at(store);
    std::construct_at(store);
}

} // namespace zm::test
