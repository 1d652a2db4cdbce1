/*
 * A stand-in for the server suite's session device, for tests only: a kernel
 * driver that creates \Device\Sorel (reached from user mode as \\.\Sorel) and
 * answers the two buffered control codes the panel sends. What it answers is
 * read at each request from values under the Parameters subkey of its service
 * key, so that a test changes the answers without restarting the service:
 *
 *   SessionResult      DWORD  1 (default): the session code succeeds; 0: it fails
 *   ClientFactsResult  DWORD  1 (default): the client facts code succeeds; 0: it fails
 *   FailureStatus      DWORD  the NTSTATUS of a failing code (default
 *                             STATUS_INVALID_DEVICE_REQUEST, ERROR_INVALID_FUNCTION
 *                             in user mode)
 *   SessionId          DWORD  first four bytes of the session answer (default 1)
 *   ClientName         REG_SZ client computer name (default empty)
 *   ClientAddress      REG_SZ client IP address text (default empty)
 *
 * It counts what reaches it in DWORD values of the same key: Opens, Closes,
 * SessionRequests, ClientFactsRequests, OtherRequests. Requests are served one at
 * a time by the host's dispatch loop, so the counters need no lock.
 */
#include <ntddk.h>

#define SESSION_IOCTL 0x80FF0044u
#define CLIENT_FACTS_IOCTL 0x80FF00C4u
#define SESSION_ANSWER_SIZE 16u
#define CLIENT_FACTS_SIZE 642u
#define CLIENT_NAME_BYTES 512u
#define CLIENT_ADDRESS_OFFSET 512u
#define CLIENT_ADDRESS_BYTES 130u
#define POOL_TAG 0x6C65726Fu /* "orel" */

/* The service key's path as given at load, with "\Parameters" added. */
static UNICODE_STRING g_parameters;

static const WCHAR kDeviceName[] = L"\\Device\\Sorel";
static const WCHAR kLinkName[] = L"\\DosDevices\\Sorel";

static NTSTATUS OpenParameters(HANDLE* key)
{
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &g_parameters, OBJ_CASE_INSENSITIVE | OBJ_KERNEL_HANDLE,
                               NULL, NULL);
    return ZwCreateKey(key, KEY_QUERY_VALUE | KEY_SET_VALUE, &attributes, 0, NULL,
                       REG_OPTION_NON_VOLATILE, NULL);
}

/* A value of the Parameters key into a caller's buffer, cut to its size: the
 * byte count taken, 0 when missing or of another type. A value too long for the
 * answer on the stack is read again into memory of its size. */
static ULONG ReadValue(HANDLE key, const WCHAR* name, ULONG type, void* out, ULONG size)
{
    union {
        KEY_VALUE_PARTIAL_INFORMATION info;
        UCHAR bytes[sizeof(KEY_VALUE_PARTIAL_INFORMATION) + CLIENT_NAME_BYTES];
    } small;
    PKEY_VALUE_PARTIAL_INFORMATION answer = &small.info;
    UNICODE_STRING valueName;
    ULONG length = 0, taken = 0;
    NTSTATUS status;
    if (!key) return 0;
    RtlInitUnicodeString(&valueName, name);
    status = ZwQueryValueKey(key, &valueName, KeyValuePartialInformation, answer, sizeof small,
                             &length);
    if (status == STATUS_BUFFER_OVERFLOW || status == STATUS_BUFFER_TOO_SMALL) {
        answer = (PKEY_VALUE_PARTIAL_INFORMATION)ExAllocatePoolWithTag(PagedPool, length, POOL_TAG);
        if (!answer) return 0;
        status = ZwQueryValueKey(key, &valueName, KeyValuePartialInformation, answer, length,
                                 &length);
    }
    if (NT_SUCCESS(status) && answer->Type == type) {
        taken = answer->DataLength < size ? answer->DataLength : size;
        RtlCopyMemory(out, answer->Data, taken);
    }
    if (answer != &small.info) ExFreePool(answer);
    return taken;
}

static ULONG ReadDword(HANDLE key, const WCHAR* name, ULONG fallback)
{
    ULONG value = 0;
    return ReadValue(key, name, REG_DWORD, &value, sizeof value) == sizeof value ? value : fallback;
}

/* A text value into a field of the answer, cut so that its terminator always fits. */
static void ReadText(HANDLE key, const WCHAR* name, UCHAR* field, ULONG fieldBytes)
{
    ReadValue(key, name, REG_SZ, field, fieldBytes - sizeof(WCHAR));
}

static void Count(HANDLE key, const WCHAR* name)
{
    UNICODE_STRING valueName;
    ULONG count = ReadDword(key, name, 0) + 1;
    if (!key) return;
    RtlInitUnicodeString(&valueName, name);
    ZwSetValueKey(key, &valueName, 0, REG_DWORD, &count, sizeof count);
}

static NTSTATUS Complete(PIRP irp, NTSTATUS status, ULONG_PTR information)
{
    irp->IoStatus.Status = status;
    irp->IoStatus.Information = NT_SUCCESS(status) ? information : 0;
    IoCompleteRequest(irp, IO_NO_INCREMENT);
    return status;
}

static NTSTATUS NTAPI OnOpenOrClose(PDEVICE_OBJECT device, PIRP irp)
{
    HANDLE key = NULL;
    UCHAR major = IoGetCurrentIrpStackLocation(irp)->MajorFunction;
    (void)device;
    if (!NT_SUCCESS(OpenParameters(&key))) key = NULL;
    Count(key, major == IRP_MJ_CREATE ? L"Opens" : L"Closes");
    if (key) ZwClose(key);
    return Complete(irp, STATUS_SUCCESS, 0);
}

static NTSTATUS AnswerSession(HANDLE key, UCHAR* buffer, ULONG outputSize, ULONG_PTR* written)
{
    ULONG sessionId = ReadDword(key, L"SessionId", 1);
    Count(key, L"SessionRequests");
    if (!ReadDword(key, L"SessionResult", 1))
        return (NTSTATUS)ReadDword(key, L"FailureStatus", (ULONG)STATUS_INVALID_DEVICE_REQUEST);
    if (outputSize < SESSION_ANSWER_SIZE) return STATUS_BUFFER_TOO_SMALL;
    RtlZeroMemory(buffer, SESSION_ANSWER_SIZE);
    RtlCopyMemory(buffer, &sessionId, sizeof sessionId);
    *written = SESSION_ANSWER_SIZE;
    return STATUS_SUCCESS;
}

static NTSTATUS AnswerClientFacts(HANDLE key, UCHAR* buffer, ULONG outputSize, ULONG_PTR* written)
{
    Count(key, L"ClientFactsRequests");
    if (!ReadDword(key, L"ClientFactsResult", 1))
        return (NTSTATUS)ReadDword(key, L"FailureStatus", (ULONG)STATUS_INVALID_DEVICE_REQUEST);
    if (outputSize < CLIENT_FACTS_SIZE) return STATUS_BUFFER_TOO_SMALL;
    RtlZeroMemory(buffer, CLIENT_FACTS_SIZE);
    ReadText(key, L"ClientName", buffer, CLIENT_NAME_BYTES);
    ReadText(key, L"ClientAddress", buffer + CLIENT_ADDRESS_OFFSET, CLIENT_ADDRESS_BYTES);
    *written = CLIENT_FACTS_SIZE;
    return STATUS_SUCCESS;
}

static NTSTATUS NTAPI OnControl(PDEVICE_OBJECT device, PIRP irp)
{
    PIO_STACK_LOCATION stack = IoGetCurrentIrpStackLocation(irp);
    ULONG code = stack->Parameters.DeviceIoControl.IoControlCode;
    ULONG outputSize = stack->Parameters.DeviceIoControl.OutputBufferLength;
    UCHAR* buffer = (UCHAR*)irp->AssociatedIrp.SystemBuffer;
    ULONG_PTR written = 0;
    NTSTATUS status = STATUS_INVALID_DEVICE_REQUEST;
    HANDLE key = NULL;
    (void)device;
    if (!NT_SUCCESS(OpenParameters(&key))) key = NULL;
    if (code == SESSION_IOCTL)
        status = AnswerSession(key, buffer, buffer ? outputSize : 0, &written);
    else if (code == CLIENT_FACTS_IOCTL)
        status = AnswerClientFacts(key, buffer, buffer ? outputSize : 0, &written);
    else
        Count(key, L"OtherRequests");
    if (key) ZwClose(key);
    return Complete(irp, status, written);
}

static VOID NTAPI OnUnload(PDRIVER_OBJECT driver)
{
    UNICODE_STRING link;
    RtlInitUnicodeString(&link, kLinkName);
    IoDeleteSymbolicLink(&link);
    if (driver->DeviceObject) IoDeleteDevice(driver->DeviceObject);
    if (g_parameters.Buffer) ExFreePool(g_parameters.Buffer);
    g_parameters.Buffer = NULL;
}

static NTSTATUS KeepParametersPath(PUNICODE_STRING registryPath)
{
    static const WCHAR suffix[] = L"\\Parameters";
    USHORT size = (USHORT)(registryPath->Length + sizeof suffix);
    g_parameters.Buffer = (PWSTR)ExAllocatePoolWithTag(NonPagedPool, size, POOL_TAG);
    if (!g_parameters.Buffer) return STATUS_INSUFFICIENT_RESOURCES;
    g_parameters.Length = 0;
    g_parameters.MaximumLength = size;
    RtlAppendUnicodeStringToString(&g_parameters, registryPath);
    return RtlAppendUnicodeToString(&g_parameters, suffix);
}

NTSTATUS NTAPI DriverEntry(PDRIVER_OBJECT driver, PUNICODE_STRING registryPath)
{
    UNICODE_STRING deviceName, link;
    PDEVICE_OBJECT device = NULL;
    NTSTATUS status = KeepParametersPath(registryPath);
    if (!NT_SUCCESS(status)) return status;
    RtlInitUnicodeString(&deviceName, kDeviceName);
    RtlInitUnicodeString(&link, kLinkName);
    status = IoCreateDevice(driver, 0, &deviceName, FILE_DEVICE_UNKNOWN, 0, FALSE, &device);
    if (NT_SUCCESS(status)) {
        status = IoCreateSymbolicLink(&link, &deviceName);
        if (!NT_SUCCESS(status)) IoDeleteDevice(device);
    }
    if (!NT_SUCCESS(status)) {
        ExFreePool(g_parameters.Buffer);
        g_parameters.Buffer = NULL;
        return status;
    }
    driver->MajorFunction[IRP_MJ_CREATE] = OnOpenOrClose;
    driver->MajorFunction[IRP_MJ_CLOSE] = OnOpenOrClose;
    driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = OnControl;
    driver->DriverUnload = OnUnload;
    return STATUS_SUCCESS;
}
