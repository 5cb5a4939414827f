"""zorvela-kit with less memory than a file needs."""
import os
import resource

from zorvela_tests import folder, program

LIMIT = 100 << 20


class Memory(folder.InFolder):
    def test_memory_that_ends_is_one_line(self):
        small = self.put("small.tab", program.full_table("APK"))
        large = self.put("large.csv", "resid,resname,atom,shift\n" + "# nothing\n" * (LIMIT // 8))
        for jobs in (1, 2):
            with self.subTest(jobs=jobs):
                ended = program.run("--jobs", jobs, "--output", self.path("out"), small, large,
                                    preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (LIMIT, LIMIT)))
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr),
                                 (1, "", "zorvela-kit: out of memory\n"))
                self.assertFalse(os.path.exists(self.path("out")))
