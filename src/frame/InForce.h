// A pointer that holds for one scope.
#pragma once

namespace OrvantaNS {

/// Sets a pointer for one scope: whichever way the scope ends, it leaves nothing behind that has gone.
template <typename Pointer> class InForce {
public:
    InForce(Pointer& place, Pointer value) : place_(place), before_(place) { place = value; }
    ~InForce() { place_ = before_; }
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;

private:
    Pointer& place_;
    Pointer before_;
};

} // namespace OrvantaNS
