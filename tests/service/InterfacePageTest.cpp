// docs/interface.md: what it says of each transaction is what the service does. The names and codes
// of the page are compared with the sources by scripts/interface.

#include <binder/IServiceManager.h>
#include <binder_linux/LocalCall.h>

#include <map>
#include <sstream>

#include "client/CallValues.h"
#include "support/EngineTest.h"
#include "support/Files.h"

namespace {

using android::Parcel;
using android::status_t;
using Words = std::vector<std::string>;

constexpr uid_t kApp = 10050;
constexpr uid_t kSystem = 1000;

Words split(const std::string& text, const std::string& by) {
    Words parts;
    size_t begin = 0;
    for (size_t end = text.find(by); end != std::string::npos; end = text.find(by, begin)) {
        parts.push_back(text.substr(begin, end - begin));
        begin = end + by.size();
    }
    parts.push_back(text.substr(begin));
    return parts;
}

/** The cells of the rows of transactions: "", code, name, who, posts, arguments, reply, … */
std::map<uint32_t, Words> transactions() {
    const std::string page = readFile(KELVO_INTERFACE_PAGE);
    const size_t begin = page.find("## Transactions");
    std::istringstream section(page.substr(begin, page.find("\n### ", begin) - begin));
    std::map<uint32_t, Words> rows;
    for (std::string line; std::getline(section, line);) {
        Words cells = split(line, "|");
        const uint32_t code = cells.size() > 8 ? static_cast<uint32_t>(atoi(cells[1].c_str())) : 0;
        for (std::string& cell : cells) {
            cell.erase(0, cell.find_first_not_of(' '));
            cell.erase(cell.find_last_not_of(' ') + 1);
        }
        if (code != 0) {
            rows[code] = cells;
        }
    }
    return rows;
}

void addArgument(const std::string& type, Parcel& data) {
    if (type == "int32") {
        data.writeInt32(21);
    } else if (type == "string") {
        data.writeString16(android::String16("text"));
    } else if (type == "list") {
        data.writeInt32Vector(std::vector<int32_t>(21, 35));
    } else if (type == "listener") {
        data.writeStrongBinder(new android::BBinder());
    } else {
        ADD_FAILURE() << "no such type: " << type;
    }
}

/** Its next value as text, "?" when it lacks it. */
std::string take(const std::string& type, const Parcel& reply) {
    const auto known = client::replyTypeNamed(type == "list" ? "vector" : type);
    const Json::Value value = known ? client::readReplyValue(reply, *known) : Json::Value();
    return value.isNull() ? "?" : value.toStyledString();
}

/** What is wrong with a reply of these types; the last one's "…" stands for any number. */
std::string faultIn(const Parcel& reply, const Words& types) {
    for (const std::string& type : types) {
        const bool many = type.ends_with("…");
        const std::string one = many ? type.substr(0, type.size() - strlen("…")) : type;
        do {
            if (one != "nothing" && take(one, reply) == "?") {
                return "it lacks " + type;
            }
        } while (many && reply.dataAvail() > 0);
    }
    return reply.dataAvail() == 0 ? "" : "more follows";
}

class InterfacePageTest : public EngineTest {
  protected:
    InterfacePageTest() {
        addZone("skin", 40000);
        setConfig(
                "{'specified_tempzone_info': {'thermal_zone_type': ['skin']},"
                " 'cpulimit_process': {'limit_info': ['a', 'b']},"
                " 'shell_temp_fitting_model': {" +
                scene("default", 0, "skin") + "}}");
        startPhone();
        runUntil(0);
        mService = android::defaultServiceManager()->checkService(android::String16("kelvo"));
    }

    status_t call(uint32_t code, const Words& arguments, uid_t uid, Parcel& reply) {
        Parcel data;
        data.writeInterfaceToken(android::String16(client::kServiceDescriptor));
        for (const std::string& type : arguments) {
            addArgument(type, data);
        }
        const android::LocalCall caller(uid, getpid());
        const status_t status = mService->transact(code, data, &reply);
        reply.setDataPosition(0);
        return status;
    }

  private:
    android::sp<android::IBinder> mService;
};

}  // namespace

TEST_F(InterfacePageTest, tellsWhatEachTransactionDoes) {
    const auto rows = transactions();
    ASSERT_GT(rows.size(), 20u);
    for (uint32_t code = 1; code < 200; ++code) {
        Parcel reply, refused, empty;
        if (!rows.contains(code)) {
            EXPECT_EQ(call(code, {}, kSystem, reply), android::UNKNOWN_TRANSACTION) << code;
            continue;
        }
        const Words& row = rows.at(code);
        const Words arguments = row[5].empty() ? Words() : split(row[5], ", ");
        EXPECT_EQ(call(code, arguments, kSystem, reply), android::OK) << code;
        EXPECT_EQ(faultIn(reply, split(row[6], ", ")), "") << code;
        const bool anyone = row[3] == "anyone";
        EXPECT_EQ(call(code, arguments, kApp, refused),
                  anyone ? android::OK : android::PERMISSION_DENIED)
                << code;
        EXPECT_TRUE(anyone || refused.dataSize() == 0) << code;
        EXPECT_EQ(row[7].empty(), arguments.empty()) << code;
        if (!arguments.empty()) {
            EXPECT_EQ(call(code, {}, kSystem, empty), android::OK) << code;
            EXPECT_EQ(empty.dataSize() == 0 ? "nothing\n" : take("int32", empty), row[7] + "\n");
        }
    }
}
