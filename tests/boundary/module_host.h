// What the two hosts of the module test differ in: whether they define the hooks, and so what these have counted.
#ifndef QSTDLIB_TESTS_BOUNDARY_MODULE_HOST_H
#define QSTDLIB_TESTS_BOUNDARY_MODULE_HOST_H

struct Registrations
{
    int expectedPerLoad; // 1 in a host that defines the hooks, else 0
    int registered;
    int unregistered;
    bool namesAreRight;
};

const Registrations& SeenRegistrations();

#endif
