/* A stand-in for a Windows device programmer: records its working directory and arguments in
   prog-args.txt beside itself and says how many it got on standard output. With the argument --stay it
   then keeps running, as a programmer's window would, until it is ended; with --fail it complains on
   standard error and ends with exit status 3. */
#include <windows.h>
#include <stdio.h>
#include <wchar.h>

static void putUtf8(FILE* f, const wchar_t* text) {
    char buf[4096];
    int n = WideCharToMultiByte(CP_UTF8, 0, text, -1, buf, sizeof buf, NULL, NULL);
    if (n > 0)
        fputs(buf, f);
}

int wmain(int argc, wchar_t** argv) {
    wchar_t path[MAX_PATH], cwd[MAX_PATH];
    GetModuleFileNameW(NULL, path, MAX_PATH);
    wchar_t* slash = wcsrchr(path, L'\\');
    wcscpy(slash ? slash + 1 : path, L"prog-args.txt");
    FILE* f = _wfopen(path, L"wb");
    if (!f)
        return 1;
    GetCurrentDirectoryW(MAX_PATH, cwd);
    fputs("cwd=", f), putUtf8(f, cwd), fputs("\n", f);
    int stay = 0, fail = 0;
    for (int i = 1; i < argc; ++i) {
        fputs("arg=", f), putUtf8(f, argv[i]), fputs("\n", f);
        stay |= wcscmp(argv[i], L"--stay") == 0;
        fail |= wcscmp(argv[i], L"--fail") == 0;
    }
    fclose(f);
    printf("fakeprog: %d arguments\n", argc - 1);
    fflush(stdout);
    if (fail) {
        fputs("fakeprog: no device answers\n", stderr);
        return 3;
    }
    if (stay)
        Sleep(600000);
    return 0;
}
