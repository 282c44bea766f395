// The machine code of thunks on 32-bit systems. It is never run where it stands: it is the template that is copied
// into a block, of which it may use nothing but the fields (thunk_block.h) and the address patched into it. Jumps and
// calls inside it are relative. Each entry preserves all registers but the result's.
//
// After pushad the saved registers are the frame: that of eax, which popad hands back, is the result, and that of
// esp, which popad leaves alone, is bHandled.

	.intel_syntax noprefix
	.section .rdata, "dr"

#define FIELD(index)    dword ptr [ebx + 4 * (index)]
#define FIELD_BYTE(index) [ebx + 4 * (index)]	// its lowest
#define HANDLED         [ebp + 12]
#define RESULT          [ebp + 28]
#define RETURN_ADDRESS  [ebp + 32]
#define ARGUMENT(n)     dword ptr [ebp + 36 + 4 * (n)]

// 12 bytes, the block's address from the 8th on.
	.macro enter_thunk
	pushad
	mov	ebp, esp
	and	dword ptr RESULT, 0
	.byte	0xBB		// mov ebx, the block
	.long	0
	.endm

	.macro leave_thunk argument_bytes
	mov	esp, ebp
	popad
	ret	\argument_bytes
	.endm

// A method's lReturn and bHandled, by reference.
	.macro push_answers
	lea	eax, RESULT
	push	eax
	lea	eax, HANDLED
	push	eax
	.endm

// --- Windows: bytes 72 to 427 of the block ------------------------------------------------------------------

#define COUNTER          0
#define STATE            1
#define WINDOW           2
#define EB_MODE          3
#define CALL_WINDOW_PROC 4
#define SET_WINDOW_LONG  5
#define VIRTUAL_FREE     6
#define IS_BAD_CODE_PTR  7
#define OBJECT           8
#define ORIGINAL         9
#define METHOD           10
#define BEFORE_TABLE     11
#define AFTER_TABLE      12
#define USER             13
#define DESTROY_WINDOW   14
#define SET_TIMER        15
#define KILL_TIMER       16
#define TIMER            17

#define STATE_METHOD_GONE 0x82
#define STATE_WINDOW_GONE 0x8000
#define MESSAGE          ARGUMENT(1)
#define WM_NCDESTROY     0x82
#define GWL_WNDPROC      -4
#define RELEASE_DELAY    100
#define MEM_RELEASE      0x8000
#define TIMER_ENTRY      72

	.globl	_marklet_subclass_code
_marklet_subclass_code:
subclass_code:

// TimerProc(window, message, timer, time).
timer_procedure:
	enter_thunk
	jmp	release_block

	.org	subclass_code + 24, 0x90
// WindowProc(window, message, wparam, lparam).
window_procedure:
	enter_thunk
	and	dword ptr HANDLED, 0
	inc	FIELD(COUNTER)
	cmp	FIELD(STATE), 0
	jne	original_only
	call	is_method_bad
	jnz	original_only
	mov	eax, FIELD(EB_MODE)
	test	eax, eax
	jz	running
	call	eax
	cmp	eax, 1
	je	running
	test	eax, eax
	jnz	original_only	// a break: nothing is called, nothing ends
	mov	byte ptr FIELD_BYTE(STATE), STATE_METHOD_GONE	// it was 0
original_only:
	call	call_original
	jmp	leave_window_procedure

running:
	mov	edi, FIELD(BEFORE_TABLE)
	or	esi, -1
	call	call_if_listed
	cmp	dword ptr HANDLED, 0
	jne	leave_window_procedure
	call	call_original
	mov	edi, FIELD(AFTER_TABLE)
	xor	esi, esi
	call	call_if_listed

leave_window_procedure:
	cmp	MESSAGE, WM_NCDESTROY
	jne	not_last_message
	mov	FIELD(STATE), STATE_WINDOW_GONE
not_last_message:
	dec	FIELD(COUNTER)
	jnz	out
	cmp	FIELD(STATE), 0
	je	out

// The last call out of an ending thunk: the window gets its procedure back, and the timer frees the block.
	push	FIELD(ORIGINAL)
	push	GWL_WNDPROC
	push	FIELD(WINDOW)
	call	FIELD(SET_WINDOW_LONG)
	cmp	byte ptr FIELD_BYTE(STATE), STATE_METHOD_GONE	// no other state ends so
	jne	start_timer
	mov	eax, FIELD(DESTROY_WINDOW)
	test	eax, eax
	jz	start_timer
	push	FIELD(WINDOW)
	call	eax
start_timer:
	call	kill_pending_timer
	lea	eax, [ebx + TIMER_ENTRY]
	mov	FIELD(TIMER), eax
	push	eax
	push	RELEASE_DELAY
	push	0
	push	0
	call	FIELD(SET_TIMER)
	mov	FIELD(TIMER), eax
out:
	leave_thunk 16

// The block can't free itself while it runs: the timer's call is turned into one of VirtualFree(block, 0,
// MEM_RELEASE) that returns to where the timer's would have. That leaves 4 bytes of the timer's arguments for the
// address of VirtualFree, to which the last ret here goes.
release_block:
	call	kill_pending_timer
	mov	eax, RETURN_ADDRESS
	mov	ARGUMENT(0), eax
	mov	ARGUMENT(1), ebx
	and	ARGUMENT(2), 0
	mov	ARGUMENT(3), MEM_RELEASE
	mov	eax, FIELD(VIRTUAL_FREE)
	mov	RETURN_ADDRESS, eax
	popad
	ret

// Not zero: the method's code is no memory any more, which ends the thunk.
is_method_bad:
	push	FIELD(METHOD)
	call	FIELD(IS_BAD_CODE_PTR)
	test	eax, eax
	jz	no_call
	mov	FIELD(STATE), STATE_METHOD_GONE
no_call:
	ret

// Calls the method if the table at edi has the message, with bBefore in esi.
call_if_listed:
	mov	ecx, [edi]
	test	ecx, ecx
	js	listed
	mov	eax, MESSAGE
next_entry:
	dec	ecx
	js	no_call
	cmp	eax, [edi + 4 * ecx + 4]
	jne	next_entry
listed:
	call	is_method_bad
	jnz	no_call
	lea	eax, FIELD(USER)
	push	eax
	push	ARGUMENT(3)
	push	ARGUMENT(2)
	push	ARGUMENT(1)
	push	ARGUMENT(0)
	push_answers
	push	esi
	push	FIELD(OBJECT)
	call	FIELD(METHOD)
	ret

// A block that is used again isn't freed under the call.
call_original:
	call	kill_pending_timer
	push	ARGUMENT(3)
	push	ARGUMENT(2)
	push	ARGUMENT(1)
	push	ARGUMENT(0)
	push	FIELD(ORIGINAL)
	call	FIELD(CALL_WINDOW_PROC)
	mov	RESULT, eax
	ret

kill_pending_timer:
	mov	eax, FIELD(TIMER)
	test	eax, eax
	jz	no_timer
	and	FIELD(TIMER), 0
	push	eax
	push	0
	call	FIELD(KILL_TIMER)
no_timer:
	ret

	.org	subclass_code + 356, 0x90

// --- Hooks: bytes 56 to 267 of the block ---------------------------------------------------------------------

#define SHUTDOWN            1
#define HOOK_TYPE           2
#define CALL_NEXT_HOOK_EX   4
#define UNHOOK              5
#define LIFE                6
#define HOOK                9
#define BEFORE              11
#define AFTER               12

	.globl	_marklet_hook_code
_marklet_hook_code:
hook_code:

// HookProc(code, wparam, lparam).
hook_procedure:
	enter_thunk
	and	dword ptr HANDLED, 0
	inc	FIELD(COUNTER)
	cmp	FIELD(SHUTDOWN), 0
	jne	next_only
	push	FIELD(METHOD)
	call	FIELD(IS_BAD_CODE_PTR)
	test	eax, eax
	jnz	hook_method_gone
	cmp	FIELD(EB_MODE), 0
	je	hook_running
	// The object must still be what it was.
	mov	esi, FIELD(OBJECT)
	push	esi
	call	FIELD(IS_BAD_CODE_PTR)
	test	eax, eax
	jnz	hook_method_gone
	mov	eax, [esi + 8]
	cmp	eax, FIELD(LIFE)
	jne	hook_method_gone
	call	FIELD(EB_MODE)
	cmp	eax, 1
	je	hook_running
	test	eax, eax
	jnz	next_only
hook_method_gone:
	mov	byte ptr FIELD_BYTE(SHUTDOWN), 1
next_only:
	call	call_next
	jmp	leave_hook_procedure

hook_running:
	cmp	FIELD(BEFORE), 0
	je	not_before_next
	or	edi, -1
	call	call_hook_method
	cmp	dword ptr HANDLED, 0
	jne	leave_hook_procedure
not_before_next:
	call	call_next
	cmp	FIELD(AFTER), 0
	je	leave_hook_procedure
	// The code may have gone during the call.
	push	FIELD(METHOD)
	call	FIELD(IS_BAD_CODE_PTR)
	test	eax, eax
	jnz	hook_method_gone_after
	xor	edi, edi
	call	call_hook_method
	jmp	leave_hook_procedure
hook_method_gone_after:
	mov	byte ptr FIELD_BYTE(SHUTDOWN), 1

leave_hook_procedure:
	dec	FIELD(COUNTER)
	jnz	hook_out
	cmp	FIELD(SHUTDOWN), 0
	je	hook_out
	push	FIELD(HOOK)
	call	FIELD(UNHOOK)
hook_out:
	leave_thunk 12

// With bBefore in edi.
call_hook_method:
	lea	eax, FIELD(USER)
	push	eax
	push	FIELD(HOOK_TYPE)
	push	ARGUMENT(2)
	push	ARGUMENT(1)
	push	ARGUMENT(0)
	push_answers
	push	edi
	push	FIELD(OBJECT)
	call	FIELD(METHOD)
	ret

call_next:
	push	ARGUMENT(2)
	push	ARGUMENT(1)
	push	ARGUMENT(0)
	push	FIELD(HOOK)
	call	FIELD(CALL_NEXT_HOOK_EX)
	mov	RESULT, eax
	ret

	.org	hook_code + 212, 0x90

// --- Other callbacks: bytes 20 to 143 of the block -----------------------------------------------------------

#define CALLBACK_OBJECT     0
#define CALLBACK_METHOD     1
#define CALLBACK_EB_MODE    2
#define CALLBACK_IS_BAD     3
#define CALLBACK_KILL_TIMER 4

	.globl	_marklet_callback_code
_marklet_callback_code:
callback_code:
	pushad
	mov	ebp, esp
	.byte	0xBB		// mov ebx, the block: byte 24
	.long	0
	and	dword ptr RESULT, 0
	push	FIELD(CALLBACK_METHOD)
	call	FIELD(CALLBACK_IS_BAD)
	test	eax, eax
	jnz	kill_timer_of_callback
	mov	eax, FIELD(CALLBACK_EB_MODE)
	test	eax, eax
	jz	callback_running
	call	eax
	dec	eax
	jz	callback_running
	dec	eax
	jz	callback_out
	jmp	kill_timer_of_callback
callback_running:
	lea	eax, RESULT
	push	eax
	nop
	nop
	nop
	nop
	nop
	nop
	nop
	nop
	.byte	0xB9		// mov ecx, the parameter count: byte 72
	.long	0
	jecxz	call_callback
push_argument:
	push	[ebp + 32 + 4 * ecx]
	dec	ecx
	jnz	push_argument
call_callback:
	push	FIELD(CALLBACK_OBJECT)
	call	FIELD(CALLBACK_METHOD)
callback_out:
	mov	esp, ebp
	popad
	.org	callback_code + 77, 0x90
	.byte	0xC2		// ret, 4 bytes for each parameter: byte 98
	.short	0
// A timer's callback has the window first and the timer third.
kill_timer_of_callback:
	mov	eax, FIELD(CALLBACK_KILL_TIMER)
	test	eax, eax
	jz	callback_out
	push	ARGUMENT(2)
	push	ARGUMENT(0)
	call	eax
	jmp	callback_out

	.org	callback_code + 124, 0x90
