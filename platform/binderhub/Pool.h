#pragma once

#include <cstddef>
#include <utility>

namespace binderhub {

/** Makes and destroys objects that stand in graphs, and knows how many there are. */
template <typename T>
class Pool {
  public:
    template <typename... Args>
    T* make(Args&&... args) {
        T* const made = new T(std::forward<Args>(args)...);
        ++mLive;
        return made;
    }

    void destroy(T* object) {
        --mLive;
        delete object;
    }

    size_t live() const { return mLive; }

  private:
    size_t mLive = 0;
};

}  // namespace binderhub
