// A walk over everything the hub holds: counts that are kept must be those that are found.

#include "HubInvariants.h"

#include <unordered_map>
#include <unordered_set>

#include "Hub.h"
#include "Limits.h"

namespace binderhub {

namespace {

/** What a node's local counts come from. */
struct LocalCounts {
    uint64_t strong = 0;
    uint64_t weak = 0;
};

class InvariantCheck {
  public:
    explicit InvariantCheck(const Driver& driver) : mDriver(driver) {}

    void visit(const Process& process) {
        visitBuffers(process);
        process.handles.forEach([this, &process](const Ref& ref) { visitRef(process, ref); });
        for (const auto& [key, thread] : process.threads) {
            visitThread(*thread);
        }
        mDeaths += process.deaths;
        visitTransactions(process.todo);
        for (const auto& [ptr, node] : process.nodes) {
            expect(node->owner == &process && node->ptr == ptr, "a node is not its owner's");
            visitNode(*node);
            visitTransactions(node->asyncTodo);
        }
    }

    std::string finish() {
        for (const Node* node : mNodes) {
            finishNode(*node);
        }
        const References& references = mDriver.references;
        expect(references.refs.live() == mRefs, "a reference is lost");
        expect(references.nodes.live() == mNodes.size(), "a node is lost");
        expect(references.deaths.live() == mDeaths, "a death notice is lost");
        expect(mDriver.transactor.transactions.live() == mTransactions.size(),
               "a transaction is lost");
        return mProblem;
    }

  private:
    void expect(bool holds, const char* problem) {
        if (!holds && mProblem.empty()) {
            mProblem = problem;
        }
    }

    void visitBuffers(const Process& process) {
        size_t bytes = 0;
        size_t asyncBytes = 0;
        size_t descriptors = 0;
        process.buffers.forEach([&](const Buffer& buffer) {
            bytes += buffer.charge;
            asyncBytes += buffer.oneWay ? buffer.charge : 0;
            descriptors += buffer.descriptors.size();
            visitHeld(process, buffer);
        });
        expect(bytes == process.buffers.bytes() && bytes <= kBufferSpace, "wrong buffer space");
        expect(asyncBytes == process.buffers.asyncBytes() && asyncBytes <= kAsyncSpace,
               "wrong one-way space");
        expect(descriptors == process.buffers.heldDescriptors(), "wrong number of descriptors");
    }

    void visitHeld(const Process& process, const Buffer& buffer) {
        if (buffer.target != nullptr) {
            expect(buffer.target->owner == &process, "a call is not at its target");
            ++mLocal[buffer.target].strong;
        }
        for (const HeldObject& object : buffer.held) {
            if (object.node != nullptr) {
                ++(object.strength == Strength::kStrong ? mLocal[object.node].strong
                                                        : mLocal[object.node].weak);
            }
        }
    }

    void visitRef(const Process& process, const Ref& ref) {
        ++mRefs;
        expect(ref.strong != 0 || ref.weak != 0, "a reference counts nothing");
        expect(ref.linked() && process.handles.find(ref.node) == &ref,
               "a handle is not its node's");
        expect(ref.node.owner != &process, "a process refers to itself");
        visitNode(ref.node);
    }

    void visitNode(const Node& node) { mNodes.insert(&node); }

    void finishNode(const Node& node) {
        uint64_t strong = 0;
        node.refs.forEach([&strong](const Ref& ref) { strong += ref.strong != 0 ? 1 : 0; });
        expect(strong == node.strongRefs, "wrong number of strong references");
        LocalCounts local = mLocal[&node];
        local.strong += node.strongPending ? 1 : 0;
        local.weak += node.weakPending ? 1 : 0;
        const uint64_t managers = &node == mDriver.references.manager() ? 1 : 0;
        expect(node.owner == nullptr || (node.localStrong == local.strong + managers &&
                                         node.localWeak == local.weak + managers),
               "wrong number of local references");
    }

    void visitThread(const Thread& thread) {
        expect(!thread.Link<WaitingTag>::linked() || (thread.wantsReturns && thread.isAvailable()),
               "a thread waits that may not");
        expect(!thread.wantsReturns || !thread.hasUrgent, "work is forgotten");
        expect(!thread.wantsReturns || !thread.isAvailable() || thread.process.todo.empty(),
               "a process's work is forgotten");
        visitTransactions(thread.todo);
        const Transaction* call = thread.stack;
        while (call != nullptr) {
            const bool isReceiver = call->to == &thread;
            expect(isReceiver != (call->from == &thread), "a call is on the wrong stack");
            visitCall(call);
            call = isReceiver ? call->toParent : call->fromParent;
        }
    }

    /** With those that only wait for it. */
    void visitCall(const Transaction* call) {
        while (call != nullptr && mTransactions.insert(call).second) {
            call = call->fromParent;
        }
    }

    void visitTransactions(const WorkList& list) {
        list.forEach([this](const Work& work) {
            if (work.kind == Work::Kind::kTransaction) {
                visitCall(static_cast<const Transaction*>(&work));
            }
        });
    }

    const Driver& mDriver;
    std::string mProblem;
    size_t mRefs = 0;
    size_t mDeaths = 0;
    std::unordered_set<const Node*> mNodes;
    std::unordered_set<const Transaction*> mTransactions;
    std::unordered_map<const Node*, LocalCounts> mLocal;
};

}  // namespace

std::string checkInvariants(const Hub& hub) {
    InvariantCheck check(hub.driver());
    for (const auto& [key, process] : hub.processes()) {
        check.visit(*process);
    }
    return check.finish();
}

}  // namespace binderhub
