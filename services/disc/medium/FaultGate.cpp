#include "services/disc/medium/FaultGate.h"

#include "base/Mutex.h"

namespace zm::disc::medium {

struct FaultGate::State {
    Mutex mutex;
    Condition changed;
    DriveFault fault ZM_GUARDED_BY(mutex) = DriveFault::None;

    // Passes, fails, or waits for the end of the fault.
    Status pass() {
        MutexLock lock(mutex);
        while (fault == DriveFault::NoAnswer) {
            changed.wait(lock);
        }
        return fault == DriveFault::None ? ok() : Error{"read error"};
    }

    void set(DriveFault wanted) {
        MutexLock lock(mutex);
        fault = wanted;
        changed.notifyAll();
    }
};

class FaultGate::Reader : public ByteReader {
public:
    Reader(std::unique_ptr<ByteReader> reader, std::shared_ptr<State> state)
        : m_reader(std::move(reader)), m_state(std::move(state)) {}
    uint64_t size() const override { return m_reader->size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        if (auto status = m_state->pass(); !status) {
            return status.failure();
        }
        return m_reader->readAt(offset, buffer);
    }

private:
    std::unique_ptr<ByteReader> m_reader;
    std::shared_ptr<State> m_state;
};

FaultGate::FaultGate(std::shared_ptr<Medium> medium)
    : m_medium(std::move(medium)), m_state(std::make_shared<State>()) {
    describe(m_medium->description());
}

FaultGate::~FaultGate() {
    // Lets readers that still hang come back.
    m_state->set(DriveFault::ReadError);
}

void FaultGate::set(DriveFault fault) {
    m_state->set(fault);
}

std::string FaultGate::label() const {
    return m_medium->label();
}

Result<std::vector<Entry>> FaultGate::list(const std::string& folder) {
    if (auto status = m_state->pass(); !status) {
        return status.failure();
    }
    return m_medium->list(folder);
}

Result<std::unique_ptr<ByteReader>> FaultGate::open(const std::string& file) {
    if (auto status = m_state->pass(); !status) {
        return status.failure();
    }
    auto reader = m_medium->open(file);
    if (!reader) {
        return reader;
    }
    return std::unique_ptr<ByteReader>(std::make_unique<Reader>(std::move(*reader), m_state));
}

std::shared_ptr<const model::Contents> FaultGate::tracks() const {
    return m_medium->tracks();
}

} // namespace zm::disc::medium
