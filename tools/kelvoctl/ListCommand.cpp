#include <utils/String8.h>

#include "Commands.h"
#include "Services.h"

namespace kelvoctl {

namespace {

void list(const Output& output) {
    Json::Value names(Json::arrayValue);
    std::string text;
    for (const android::String16& name : serviceManager()->listServices()) {
        names.append(android::String8(name).string());
        text += (text.empty() ? "" : "\n") + names[names.size() - 1].asString();
    }
    output.print({{"services", names}}, text);
}

}  // namespace

void addList(CLI::App& app, Output& output) {
    app.add_subcommand("list", "Names of all services")->callback([&] { list(output); });
}

}  // namespace kelvoctl
