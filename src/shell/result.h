#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tarven {

/// Why a computation has no result: what its user is told, a message a line.
struct Failed {
    std::vector<std::string> messages;
    bool stopped = false;  ///< the user asked to stop
};

/// What a computation that may fail returns: its value, or the failure. Nothing can be read that is
/// not there.
template <class T>
class Result {
  public:
    Result(T value) : content_(std::move(value)) {}
    Result(Failed failure) : content_(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<T>(content_); }
    const T& operator*() const {
        assert(*this && "the value of a failure");
        return std::get<T>(content_);
    }
    T& operator*() {
        assert(*this && "the value of a failure");
        return std::get<T>(content_);
    }
    const T* operator->() const { return &**this; }
    T* operator->() { return &**this; }
    const Failed& failure() const {
        assert(!*this && "the failure of a value");
        return std::get<Failed>(content_);
    }

  private:
    std::variant<T, Failed> content_;
};

}  // namespace tarven
