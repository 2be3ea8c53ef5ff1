#pragma once

namespace binderhub {

/**
 * A member's place in a List: whoever derives from Link<Tag> can stand in one list of that tag.
 * Leaves the list when destroyed.
 */
template <typename Tag>
class Link {
  public:
    Link() = default;
    ~Link() { unlink(); }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    bool linked() const { return mNext != this; }

    void unlink() {
        mPrevious->mNext = mNext;
        mNext->mPrevious = mPrevious;
        mPrevious = mNext = this;
    }

  private:
    template <typename, typename>
    friend class List;

    Link* mPrevious = this;
    Link* mNext = this;
};

/** A list through its members, which it does not own; all in constant time. */
template <typename T, typename Tag>
class List {
  public:
    bool empty() const { return !mHead.linked(); }
    T* front() const { return empty() ? nullptr : static_cast<T*>(mHead.mNext); }
    void pushBack(T& item) { insertBefore(mHead, item); }
    void pushFront(T& item) { insertBefore(*mHead.mNext, item); }

    T* popFront() {
        T* const item = front();
        if (item != nullptr) {
            static_cast<Link<Tag>*>(item)->unlink();
        }
        return item;
    }

    /** `visit` may unlink the item it is given, no other. */
    template <typename Visit>
    void forEach(Visit&& visit) const {
        for (Link<Tag>* link = mHead.mNext; link != &mHead;) {
            T& item = *static_cast<T*>(link);
            link = link->mNext;
            visit(item);
        }
    }

  private:
    static void insertBefore(Link<Tag>& place, Link<Tag>& item) {
        Link<Tag>* const next = &place == &item ? item.mNext : &place;
        item.unlink();
        item.mNext = next;
        item.mPrevious = next->mPrevious;
        next->mPrevious->mNext = &item;
        next->mPrevious = &item;
    }

    Link<Tag> mHead;
};

}  // namespace binderhub
