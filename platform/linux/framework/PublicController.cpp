#include "zmcar/PublicController.h"

#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/FrameworkLog.h"

#include <nlohmann/json.hpp>

namespace Oro::ZMCAR {

using zm::Application;

PublicController::PublicController(IViewMessage* view) : ViewController(view) {}

PublicController::~PublicController() = default;

bool PublicController::Init() {
    return FilesControlBase::Init();
}

bool PublicController::Close() {
    return FilesControlBase::Close();
}

void PublicController::SetAppName(const std::string& name) {
    zm::setLogName(name);
}

bool PublicController::StartMonitor(int monitor) {
    return Application::instance().startMonitor(monitor);
}

bool PublicController::QueryLauncher(const std::string& app, const std::string& data) {
    return QueryLauncher(app, 0, data);
}

bool PublicController::QueryLauncher(const std::string& app, int launchType, const std::string& data) {
    return Application::instance().send(
        {{"t", "request"}, {"op", "QueryLauncher"}, {"app", app}, {"type", launchType}, {"data", data}});
}

bool PublicController::QueryCloseApp(const std::string& app, const std::string& data) {
    return Application::instance().send(
        {{"t", "request"}, {"op", "QueryCloseApp"}, {"app", app}, {"data", data}});
}

std::string PublicController::GetAppdata(int index) {
    return Application::instance().headUnit().appData(index);
}

void PublicController::ToBeep() {
    Application::instance().send({{"t", "request"}, {"op", "ToBeep"}});
}

bool PublicController::GetDeviceStatus(int id, int& value) {
    const auto read = Application::instance().headUnit().device(id);
    value = read.value_or(value);
    return read.has_value();
}

bool PublicController::GetCurrentDateTime(T_ZMDatetime& dateTime) {
    dateTime = Application::instance().headUnit().dateTime();
    return true;
}

} // namespace Oro::ZMCAR
