#pragma once

#include "services/disc/medium/Medium.h"

#include <memory>

namespace zm::disc::medium {

/** What is wrong with the drive. */
enum class DriveFault {
    None,
    ReadError, ///< every read fails
    NoAnswer   ///< every read hangs until the fault is over
};

/** A medium whose drive can be given faults, for tests and demonstrations. Any thread. */
class FaultGate : public Medium {
public:
    explicit FaultGate(std::shared_ptr<Medium> medium);
    ~FaultGate() override;

    void set(DriveFault fault);

    std::string label() const override;
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;
    std::shared_ptr<const model::Contents> tracks() const override;
    std::optional<SoundCut> cut(const std::string& file) const override { return m_medium->cut(file); }
    bool hasFilesToo() const override { return m_medium->hasFilesToo(); }

private:
    struct State;
    class Reader;
    std::shared_ptr<Medium> m_medium;
    std::shared_ptr<State> m_state;
};

} // namespace zm::disc::medium
