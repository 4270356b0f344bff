// A conversation through the C interface in which one allocation may fail.
#ifndef VORN_TESTS_FAULTS_C_CONVERSATION_H
#define VORN_TESTS_FAULTS_C_CONVERSATION_H

#ifdef __cplusplus
extern "C" {
#endif

// Holds it; 0 where all went as it should: each call succeeds, if need be on a second attempt after
// VORN_OUT_OF_MEMORY, and the answers are right. Where memory does not come back, `is_lasting`, it
// only has to come to its end and to give back what it has.
int hold_c_conversation(int is_lasting);

#ifdef __cplusplus
}
#endif

#endif
