// A conversation through the C interface in which one allocation may fail.
#ifndef VORN_TESTS_FAULTS_C_CONVERSATION_H
#define VORN_TESTS_FAULTS_C_CONVERSATION_H

#ifdef __cplusplus
extern "C" {
#endif

// Holds it; 0 where all went as it should: each call succeeds, if need be on a second attempt after
// VORN_OUT_OF_MEMORY, and the answers are right.
int hold_c_conversation(void);

#ifdef __cplusplus
}
#endif

#endif
