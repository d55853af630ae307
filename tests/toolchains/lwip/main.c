/* A TCP connection of a microcontroller with itself: the client sends a line to an echo server and
   prints what comes back. */

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "lwip/init.h"
#include "lwip/netif.h"
#include "lwip/tcp.h"
#include "lwip/timeouts.h"

#define PORT 7

static const char line[] = "hello over TCP";
static volatile uint32_t milliseconds;
static char received[sizeof line];
static size_t received_size;

void SysTick_Handler(void) {
  milliseconds = milliseconds + 1;
}

u32_t sys_now(void) {
  return milliseconds;
}

static err_t on_server_data(void* argument, struct tcp_pcb* connection, struct pbuf* data,
                            err_t error) {
  (void)argument, (void)error;
  if (data == NULL) return tcp_close(connection);
  for (struct pbuf* each = data; each != NULL; each = each->next) {
    tcp_write(connection, each->payload, each->len, TCP_WRITE_FLAG_COPY);
  }
  tcp_recved(connection, data->tot_len);
  pbuf_free(data);
  return ERR_OK;
}

static err_t on_accepted(void* argument, struct tcp_pcb* connection, err_t error) {
  (void)argument, (void)error;
  tcp_recv(connection, on_server_data);
  return ERR_OK;
}

static err_t on_client_data(void* argument, struct tcp_pcb* connection, struct pbuf* data,
                            err_t error) {
  (void)argument, (void)error;
  if (data == NULL) return tcp_close(connection);
  received_size += pbuf_copy_partial(data, received + received_size,
                                     (u16_t)(sizeof received - received_size), 0);
  tcp_recved(connection, data->tot_len);
  pbuf_free(data);
  return ERR_OK;
}

static err_t on_connected(void* argument, struct tcp_pcb* connection, err_t error) {
  (void)argument, (void)error;
  tcp_recv(connection, on_client_data);
  return tcp_write(connection, line, sizeof line, 0);
}

int main(void) {
  *(volatile uint32_t*)0xE000E014 = F_CPU / 1000 - 1; /* SysTick: one millisecond */
  *(volatile uint32_t*)0xE000E010 = 7;
  lwip_init();
  printf("lwIP %s\n", LWIP_VERSION_STRING);

  struct tcp_pcb* const bound = tcp_new();
  tcp_bind(bound, IP_ADDR_ANY, PORT);
  tcp_accept(tcp_listen(bound), on_accepted);

  ip_addr_t here;
  IP_ADDR4(&here, 127, 0, 0, 1);
  tcp_connect(tcp_new(), &here, PORT, on_connected);
  while (received_size < sizeof line && milliseconds < 5000) {
    netif_poll_all();
    sys_check_timeouts();
  }
  printf("echo: %s\n", received);
  return strcmp(received, line) == 0 ? 0 : 1;
}
