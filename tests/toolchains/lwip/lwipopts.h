#ifndef LWIPOPTS_H
#define LWIPOPTS_H

/* TCP over the loopback interface, without an operating system. */
#define NO_SYS 1
#define SYS_LIGHTWEIGHT_PROT 0
#define LWIP_NETCONN 0
#define LWIP_SOCKET 0
#define LWIP_HAVE_LOOPIF 1
#define LWIP_NETIF_LOOPBACK 1
#define LWIP_ARP 0
#define LWIP_ETHERNET 0
#define LWIP_DHCP 0
#define LWIP_DNS 0
#define MEM_ALIGNMENT 4
#define MEM_SIZE 8192
#define PBUF_POOL_SIZE 8
#define TCP_MSS 536

#endif
