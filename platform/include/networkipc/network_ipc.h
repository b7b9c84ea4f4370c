/* The host message queue: fixed 88-byte messages between the program and its host application.
 *
 * The device's platform library (libnetworkipc.so) provides these four operations. Our stand-in
 * carries the messages over a stream Unix-domain socket whose path is in the environment variable
 * LM_NETWORK_IPC: the host listens there and the program connects in init_network_msg_queue.
 * Every operation returns 0 on success and -1 on failure (errno tells why). */
#ifndef NETWORKIPC_NETWORK_IPC_H
#define NETWORKIPC_NETWORK_IPC_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define NETWORK_IPC_PATH_ENV "LM_NETWORK_IPC"

#define NETWORK_IPC_MSG_SIZE 88
#define NETWORK_IPC_PAYLOAD_SIZE (NETWORK_IPC_MSG_SIZE - 4)

/* Message ids. 2 is used by the host for something this program ignores. */
#define NETWORK_MSG_STUB_INIT 1
#define NETWORK_MSG_STUB_UNINIT 3
#define NETWORK_MSG_STUB_UNINIT_RET 4
#define NETWORK_MSG_STUB_FINALIZE 5
#define NETWORK_MSG_STUB_FINALIZE_DONE 6
#define NETWORK_MSG_STUB_FINALIZE_NETWORK_ERROR 7

/* One message, sent and received whole: the id in host byte order, then a payload that this
 * program always sends as zeros and never reads. */
typedef struct network_ipc_msg {
    int32_t id;
    uint8_t payload[NETWORK_IPC_PAYLOAD_SIZE];
} network_ipc_msg_t;

/* Opens the queue (connects to the host). Fails when the variable is unset, nobody listens or
 * the queue is already open. */
int init_network_msg_queue(void);

/* Closes the queue. A thread blocked in network_stub_recv_ipc_msg wakes up with a failure; the
 * descriptor itself is released once no operation uses it any more. Closing a closed queue is a
 * no-op that returns 0. */
int uninit_network_msg_queue(void);

/* Sends one whole message. Fails cleanly (never raises SIGPIPE) when the host is gone or the
 * queue is closed. Safe to call from several threads. */
int network_stub_send_ipc_msg(const network_ipc_msg_t* msg);

/* Blocks until one whole message has arrived. Fails when the host closes the link, the queue is
 * closed (also while waiting) or a read fails; a message cut short by the link ending is not
 * delivered. */
int network_stub_recv_ipc_msg(network_ipc_msg_t* msg);

#ifdef __cplusplus
}
#endif

#endif /* NETWORKIPC_NETWORK_IPC_H */
