#pragma once

namespace common {

/** Several lambdas as one visitor of a std::variant. */
template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace common
