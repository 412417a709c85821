#include "userfunc.h"

double demo_average(const double* values, int count)
{
    double sum = 0.0;
    int i;
    if (count <= 0)
        return 0.0;
    for (i = 0; i < count; ++i)
        sum += values[i];
    return sum / count;
}
