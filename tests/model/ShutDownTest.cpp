#include "tests/model/ModelTest.h"

#include "DiscView.h"
#include "DiscViewController.h"
#include "StartUp.h"
#include "ZMModel/CDiscData.h"

namespace zm::test {

using testing::ElementsAre;

namespace {

/** The steps of a shut-down that were taken, and the one that fails. */
struct Steps {
    bool take(const std::string& step) {
        taken.push_back(step);
        return step != failing;
    }

    std::string failing;
    std::vector<std::string> taken;
};

class EndingView : public DiscView {
public:
    EndingView(CDiscData& data, Steps& steps) : DiscView("test", data), m_steps(steps) {}
    bool Close() override { return m_steps.take("view closed"); }

private:
    Steps& m_steps;
};

class EndingController : public DiscViewController {
public:
    EndingController(CDiscData& data, Steps& steps) : DiscViewController(nullptr, data), m_steps(steps) {}
    bool Stop() override { return m_steps.take("controller stopped"); }
    bool Close() override { return m_steps.take("controller closed"); }

private:
    Steps& m_steps;
};

} // namespace

class ShutDownTest : public ModelTest {
protected:
    /** Shuts down while `failing` gives false; the steps taken. */
    std::vector<std::string> shutDown(const std::string& failing, bool result) {
        Steps steps{failing, {}};
        CDiscData data;
        EndingView view(data, steps);
        EndingController controller(data, steps);
        EXPECT_EQ(ShutDown(view, controller), result) << failing;
        return steps.taken;
    }
};

TEST_F(ShutDownTest, TheViewIsClosedThenTheControllerStoppedAndClosed) {
    EXPECT_THAT(shutDown("", true), ElementsAre("view closed", "controller stopped", "controller closed"));
}

TEST_F(ShutDownTest, TheFirstThatFailsEndsIt) {
    EXPECT_THAT(shutDown("view closed", false), ElementsAre("view closed"));
    EXPECT_THAT(shutDown("controller stopped", false), ElementsAre("view closed", "controller stopped"));
    EXPECT_THAT(shutDown("controller closed", false),
                ElementsAre("view closed", "controller stopped", "controller closed"));
}

} // namespace zm::test
