// The link to the host application: the message queue, the listener thread that receives the
// host's messages, and the procedures that end the movie and tell the host the program is gone.
//
// Return values follow the host's conventions: 0 success, -1 (or an error number) failure. The
// host-facing names are the ones the host application's developers know from their logs.
#ifndef LM_HOSTIPC_H
#define LM_HOSTIPC_H

// Logs and opens the host queue; -1 when it cannot be opened.
int lm_stagecraft_ipc_init();

// Blocks SIGQUIT for the calling thread (and so for every thread it creates later) and starts
// the listener; 0 or the error of the failing call.
int start_lm_stagecraft_ipc_listen_thread();

// Tells the host that the program quits by itself (FINALIZE), unless the link is over already.
int stop_lm_app_ipc_listen_thread();

// Waits until the launcher has published its stage instance, then posts the quit key (after the
// pre-exit key when that flag is set). -1 when no instance will ever be published.
int exit_lm_stagecraft();

// The host asked the program to quit (or the link failed): end the movie. Returns 0.
int lm_stagecraft_uninit_proc();

// The movie ended by itself: end it for good and tell the host. Returns 0.
int lm_stagecraft_finalize_proc();

// Tells the host that the program has released its resources (UNINIT_RET), then closes the
// queue; -1 when the message could not be sent.
int lm_stagecraft_exit_by_bdp_release();

// Kept for the host's integration; nothing in the program calls them. The lock waits for nobody.
void lm_stagecraft_lock();
void lm_stagecraft_unlock();

// Whether the host link is over (UNINIT or FINALIZE_DONE received, or a receive failed). Once
// set it stays set.
bool LMHostIPCEnded();

// Whether FINALIZE was sent to the host.
bool LMHostFinalizeSent();

// Waits for the listener thread when the link is over (it then leaves promptly); a listener
// still receiving from a host that holds the link open is left to end with the process.
void LMJoinEndedListener();

#endif  // LM_HOSTIPC_H
