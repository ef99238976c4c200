package com.corvex.mmitest.sim;

import java.lang.reflect.AnnotatedElement;
import java.util.Optional;

import org.junit.jupiter.api.extension.BeforeAllCallback;
import org.junit.jupiter.api.extension.BeforeEachCallback;
import org.junit.jupiter.api.extension.ExtensionContext;
import org.junit.jupiter.api.extension.LifecycleMethodExecutionExceptionHandler;
import org.junit.jupiter.api.extension.TestExecutionExceptionHandler;

/**
 * Runs JUnit 5 tests on the simulated handset:
 *
 * <pre>
 * &#64;ExtendWith(SimulatedHandsetExtension.class)
 * &#64;HandsetProfile("hidl")
 * class MyScreenTest {
 *     private final MmiNativeManager manager = new MmiNativeManager();
 *
 *     &#64;Test void onTheHidlHandset() { ... }
 *     &#64;Test &#64;HandsetProfile("bare") void onAHandsetWithoutServices() { ... }
 * }
 * </pre>
 *
 * <ul>
 *   <li>Before the class's tests (and before its test instances exist, so that a field may
 *       create {@code MmiNativeManager}), the class's profile is served.
 *   <li>Before each test, the application restarts on the test's profile (the method's
 *       {@link HandsetProfile}, else the class's, else {@value #DEFAULT_PROFILE}) with its
 *       services, answers and faults as the profile gives them, and an empty log: no test
 *       sees what an earlier one changed.
 *   <li>When a test, or one of its {@code @BeforeEach} or {@code @AfterEach} methods,
 *       fails, the log lines of that test are added to the failure (as a suppressed
 *       exception whose message holds them) and published as the report entry
 *       "handsetLog".
 * </ul>
 */
public final class SimulatedHandsetExtension
        implements BeforeAllCallback, BeforeEachCallback, TestExecutionExceptionHandler,
                LifecycleMethodExecutionExceptionHandler {
    /** The profile of a test that names none. */
    public static final String DEFAULT_PROFILE = "aidl";

    /** The log lines of a failed test, attached to its failure. */
    public static final class HandsetLog extends Exception {
        private static final long serialVersionUID = 1L;

        HandsetLog(String[] lines) {
            super("the simulated handset's log (" + lines.length + " lines):\n" + String.join("\n", lines), null, false,
                    false);
        }
    }

    @Override
    public void beforeAll(ExtensionContext context) {
        SimulatedHandset.useProfile(profileOf(context.getRequiredTestClass()).orElse(DEFAULT_PROFILE));
    }

    @Override
    public void beforeEach(ExtensionContext context) {
        SimulatedHandset.useProfile(profileOf(context.getRequiredTestMethod())
                .or(() -> profileOf(context.getRequiredTestClass()))
                .orElse(DEFAULT_PROFILE));
        SimulatedHandset.clearLog();
    }

    @Override
    public void handleTestExecutionException(ExtensionContext context, Throwable failure) throws Throwable {
        throw withLog(context, failure);
    }

    @Override
    public void handleBeforeEachMethodExecutionException(ExtensionContext context, Throwable failure)
            throws Throwable {
        throw withLog(context, failure);
    }

    @Override
    public void handleAfterEachMethodExecutionException(ExtensionContext context, Throwable failure)
            throws Throwable {
        throw withLog(context, failure);
    }

    private static Throwable withLog(ExtensionContext context, Throwable failure) {
        String[] lines = SimulatedHandset.logLines();
        failure.addSuppressed(new HandsetLog(lines));
        context.publishReportEntry("handsetLog", lines.length == 0 ? "(no lines)" : String.join("\n", lines));
        return failure;
    }

    private static Optional<String> profileOf(AnnotatedElement element) {
        HandsetProfile profile = element.getAnnotation(HandsetProfile.class);
        return profile == null ? Optional.empty() : Optional.of(profile.value());
    }
}
