// Ends with 0 if a suite of which tests are required has not passed without one.
#include "siblings/QuillonLog.h"

int main() {
    CTestSuiteLog record;
    record.m_RequireTests = true;
    return record.SuitePassed() ? 1 : 0;
}
