/* A stand-in for a Windows PicBasic Pro compiler: prints a banner, records how it was called in args.txt
   beside itself (working directory, first entry of the Windows search path, each argument), reads the
   source named by its last argument and writes its outputs beside it, named after the name it was given
   (<source>.hex, .asm, .lst, .mac, .cod), printing each name. A source that holds "error" gets an error
   line on standard output, a note on standard error, <source>.err and exit status 1; one that holds
   "exit 2" ends with status 2 and no error line; one that holds "linger" leaves a child process running
   behind it. One that holds "messages" names its files as a Windows compiler does, by their short DOS
   paths: a warning for each INCLUDE "file" line naming that file, and, like the BASIC compiler's .ASM, a
   <source>.asm whose tags name each source line before its code, with an assembler error at the code of
   the line that holds "nowhere"; it ends with status 1 and writes no hex. Built for 64-bit Windows as
   fakepbp.exe and for 32-bit Windows as fakepbp32.exe. */
#include <windows.h>
#include <stdio.h>
#include <string.h>
#include <wchar.h>

static void putUtf8(FILE* f, const wchar_t* text) {
    char buf[4096];
    int n = WideCharToMultiByte(CP_UTF8, 0, text, -1, buf, sizeof buf, NULL, NULL);
    if (n > 0)
        fputs(buf, f);
}

static void record(int argc, wchar_t** argv) {
    wchar_t path[MAX_PATH], cwd[MAX_PATH], search[4096];
    GetModuleFileNameW(NULL, path, MAX_PATH);
    wchar_t* slash = wcsrchr(path, L'\\');
    wcscpy(slash ? slash + 1 : path, L"args.txt");
    FILE* f = _wfopen(path, L"wb");
    if (!f)
        return;
    GetCurrentDirectoryW(MAX_PATH, cwd);
    fputs("cwd=", f), putUtf8(f, cwd), fputs("\n", f);
    search[0] = 0;
    GetEnvironmentVariableW(L"PATH", search, 4096);
    wchar_t* semi = wcschr(search, L';');
    if (semi)
        *semi = 0;
    fputs("path=", f), putUtf8(f, search), fputs("\n", f);
    for (int i = 0; i < argc; ++i)
        fputs("arg=", f), putUtf8(f, argv[i]), fputs("\n", f);
    fclose(f);
}

/* Writes base + extension and says so. */
static void writeOutput(const wchar_t* base, const wchar_t* extension, const char* text) {
    wchar_t path[MAX_PATH];
    swprintf(path, MAX_PATH, L"%ls%ls", base, extension);
    FILE* out = _wfopen(path, L"wb");
    if (!out)
        return;
    fputs(text, out);
    fclose(out);
    printf("Writing %ls\n", path);
}

static void linger(const wchar_t* self) {
    wchar_t line[MAX_PATH + 16];
    swprintf(line, MAX_PATH + 16, L"\"%ls\" --sleep", self);
    STARTUPINFOW si = {sizeof si};
    PROCESS_INFORMATION pi;
    if (CreateProcessW(NULL, line, NULL, NULL, FALSE, 0, NULL, NULL, &si, &pi))
        CloseHandle(pi.hProcess), CloseHandle(pi.hThread);
}

/* The short DOS form of a path relative to the working directory, or the path itself. */
static void shortForm(const wchar_t* path, wchar_t* out) {
    wchar_t full[MAX_PATH];
    if (!GetFullPathNameW(path, MAX_PATH, full, NULL) || !GetShortPathNameW(full, out, MAX_PATH))
        wcscpy(out, path);
}

static void messages(const wchar_t* source, const wchar_t* base, char* text) {
    wchar_t asmPath[MAX_PATH];
    swprintf(asmPath, MAX_PATH, L"%ls.asm", base);
    FILE* out = _wfopen(asmPath, L"wb");
    if (!out)
        return;
    int asmLine = 1, errorLine = 0;
    fputs("\tlist p=16f84a\r\n", out);
    int n = 0;
    for (char* line = strtok(text, "\n"); line; line = strtok(NULL, "\n")) {
        ++n;
        size_t len = strlen(line);
        if (len && line[len - 1] == '\r')
            line[len - 1] = 0;
        fprintf(out, "; %ls\t%05d\t%s\r\n", source, n, line);
        ++asmLine;
        char* quote = strstr(line, "INCLUDE \"");
        if (quote == line) {
            wchar_t name[MAX_PATH], dos[MAX_PATH];
            char* end = strchr(line + 9, '"');
            if (end)
                *end = 0;
            MultiByteToWideChar(CP_UTF8, 0, line + 9, -1, name, MAX_PATH);
            shortForm(name, dos);
            printf("WARNING Line 1: Included here. (%ls)\r\n", dos);
        }
        fputs(strstr(line, "nowhere") ? "\tgoto nowhere\r\n" : "\tnop\r\n", out);
        ++asmLine;
        if (strstr(line, "nowhere"))
            errorLine = asmLine;
    }
    fclose(out);
    if (errorLine)
        printf("Error[113] %ls.ASM %d : Symbol not previously defined (nowhere)\r\n", base, errorLine);
}

int wmain(int argc, wchar_t** argv) {
    if (argc == 2 && wcscmp(argv[1], L"--sleep") == 0) {
        Sleep(600000);
        return 0;
    }
    printf("PICBASIC PRO(TM) Compiler 3.1.5, (c) 1997, 2022 microEngineering Labs, Inc.\n");
    printf("All Rights Reserved.\n");
    record(argc, argv);
    if (argc < 2)
        return 1;
    const wchar_t* source = argv[argc - 1];
    FILE* in = _wfopen(source, L"rb");
    if (!in) {
        printf("ERROR: Unable to open file %ls\n", source);
        return 1;
    }
    char text[4096] = {0};
    fread(text, 1, sizeof text - 1, in);
    fclose(in);
    wchar_t base[MAX_PATH];
    wcsncpy(base, source, MAX_PATH - 5);
    base[MAX_PATH - 5] = 0;
    wchar_t* dot = wcsrchr(base, L'.');
    wchar_t* slash = wcsrchr(base, L'\\');
    if (dot && (!slash || dot > slash))
        *dot = 0;
    if (strstr(text, "messages")) {
        messages(source, base, text);
        return 1;
    }
    if (strstr(text, "error")) {
        printf("ERROR Line 1: Syntax error.\n");
        fflush(stdout);
        fwprintf(stderr, L"1 error in %ls\n", source);
        fflush(stderr);
        writeOutput(base, L".err", "ERROR Line 1: Syntax error.\n");
        return 1;
    }
    if (strstr(text, "exit 2"))
        return 2;
    writeOutput(base, L".hex", ":020000040000FA\n:00000001FF\n");
    writeOutput(base, L".asm", "; asm\n");
    writeOutput(base, L".lst", "; lst\n");
    writeOutput(base, L".mac", "; mac\n");
    writeOutput(base, L".cod", "cod");
    if (strstr(text, "linger")) {
        wchar_t self[MAX_PATH];
        GetModuleFileNameW(NULL, self, MAX_PATH);
        linger(self);
    }
    return 0;
}
