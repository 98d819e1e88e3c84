// The least that uses nxl: the length of a vector.
#include <cstdio>
#include <nxl.h>

int main() {
    const int n = 2, one = 1;
    const double x[] = {3.0, 4.0};
    const double length = dnrm2(&n, x, &one);
    std::printf("the vector (3, 4) has length %g\n", length);
    return length == 5.0 ? 0 : 1;
}
